#include "platform/linux/CurlLibrary.h"

#include <dlfcn.h>

namespace tabwright::platform {

template <class Function>
void CurlLibrary::find(void* handle, Function& function, const char* name) {
  function = reinterpret_cast<Function>(::dlsym(handle, name));
  if (!function)
    whyMissing_ = ::dlerror();
}

CurlLibrary::CurlLibrary() {
  // By its names in Debian, with OpenSSL or with GnuTLS: what is used here is the same in both.
  void* handle = nullptr;
  for (const char* name : {"libcurl.so.4", "libcurl-gnutls.so.4"}) {
    if (!handle)
      handle = ::dlopen(name, RTLD_NOW | RTLD_LOCAL);
  }
  if (!handle) {
    whyMissing_ = ::dlerror();
    return;
  }
  find(handle, globalInit, "curl_global_init");
  find(handle, free, "curl_free");
  find(handle, url, "curl_url");
  find(handle, urlSet, "curl_url_set");
  find(handle, urlGet, "curl_url_get");
  find(handle, urlCleanup, "curl_url_cleanup");
  find(handle, easyInit, "curl_easy_init");
  find(handle, easySetopt, "curl_easy_setopt");
  find(handle, easyPerform, "curl_easy_perform");
  find(handle, easyGetinfo, "curl_easy_getinfo");
  find(handle, easyCleanup, "curl_easy_cleanup");
  find(handle, easyStrerror, "curl_easy_strerror");
  find(handle, listAppend, "curl_slist_append");
  find(handle, listFree, "curl_slist_free_all");
  find(handle, multiInit, "curl_multi_init");
  find(handle, multiAddHandle, "curl_multi_add_handle");
  find(handle, multiRemoveHandle, "curl_multi_remove_handle");
  find(handle, multiPerform, "curl_multi_perform");
  find(handle, multiPoll, "curl_multi_poll");
  find(handle, multiInfoRead, "curl_multi_info_read");
  find(handle, multiStrerror, "curl_multi_strerror");
  find(handle, multiCleanup, "curl_multi_cleanup");
  if (!whyMissing_.empty())
    return;
  if (const CURLcode code = globalInit(CURL_GLOBAL_DEFAULT); code != CURLE_OK)
    whyMissing_ = easyStrerror(code);
}

const CurlLibrary& CurlLibrary::loaded() {
  static const CurlLibrary library;
  return library;
}

const CurlLibrary* CurlLibrary::shared() {
  return loaded().whyMissing_.empty() ? &loaded() : nullptr;
}

const std::string& CurlLibrary::whyMissing() {
  return loaded().whyMissing_;
}

} // namespace tabwright::platform
