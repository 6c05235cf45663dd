#pragma once

#include <curl/curl.h>
#include <string>

namespace tabwright::platform {

/// The functions of libcurl that are used, looked up in the library when it is first needed: it brings thirty others
/// along, which no other command should wait for. It stays loaded until the process ends. Safe from any thread.
class CurlLibrary {
public:
  /// Null where it can't be loaded.
  [[nodiscard]] static const CurlLibrary* shared();
  /// Why it can't, as the loader says it; empty where it could.
  [[nodiscard]] static const std::string& whyMissing();

  decltype(&curl_global_init) globalInit = nullptr;
  decltype(&curl_free) free = nullptr;
  decltype(&curl_url) url = nullptr;
  decltype(&curl_url_set) urlSet = nullptr;
  decltype(&curl_url_get) urlGet = nullptr;
  decltype(&curl_url_cleanup) urlCleanup = nullptr;
  decltype(&curl_easy_init) easyInit = nullptr;
  decltype(&curl_easy_setopt) easySetopt = nullptr;
  decltype(&curl_easy_perform) easyPerform = nullptr;
  decltype(&curl_easy_getinfo) easyGetinfo = nullptr;
  decltype(&curl_easy_cleanup) easyCleanup = nullptr;
  decltype(&curl_easy_strerror) easyStrerror = nullptr;
  decltype(&curl_slist_append) listAppend = nullptr;
  decltype(&curl_slist_free_all) listFree = nullptr;
  decltype(&curl_multi_init) multiInit = nullptr;
  decltype(&curl_multi_add_handle) multiAddHandle = nullptr;
  decltype(&curl_multi_remove_handle) multiRemoveHandle = nullptr;
  decltype(&curl_multi_perform) multiPerform = nullptr;
  decltype(&curl_multi_poll) multiPoll = nullptr;
  decltype(&curl_multi_info_read) multiInfoRead = nullptr;
  decltype(&curl_multi_strerror) multiStrerror = nullptr;
  decltype(&curl_multi_cleanup) multiCleanup = nullptr;

private:
  CurlLibrary();
  static const CurlLibrary& loaded();

  template <class Function>
  void find(void* handle, Function& function, const char* name);

  std::string whyMissing_;
};

} // namespace tabwright::platform
