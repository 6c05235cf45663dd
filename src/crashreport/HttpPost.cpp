#include "crashreport/HttpPost.h"

#include "platform/Logger.h"

#include <cstddef>
#include <curl/curl.h>
#include <dlfcn.h>
#include <memory>

namespace tabwright::crashreport {
namespace {

const platform::Logger postLog("HttpPost");

constexpr std::size_t longestAnswer = std::size_t{64} << 10;

// The functions used, looked up in the library, which stays loaded until the process ends.
class Curl {
public:
  /// Null when there is none.
  static const Curl* shared() {
    static const Curl library;
    return library.isComplete_ ? &library : nullptr;
  }

  decltype(&curl_easy_init) init = nullptr;
  decltype(&curl_easy_setopt) set = nullptr;
  decltype(&curl_easy_perform) perform = nullptr;
  decltype(&curl_easy_getinfo) info = nullptr;
  decltype(&curl_easy_strerror) reason = nullptr;
  decltype(&curl_easy_cleanup) cleanup = nullptr;
  decltype(&curl_slist_append) append = nullptr;
  decltype(&curl_slist_free_all) freeList = nullptr;

private:
  Curl() {
    // The same library over OpenSSL or GnuTLS: whichever is there.
    for (const char* name : {"libcurl.so.4", "libcurl-gnutls.so.4"}) {
      if (void* const handle = ::dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
        isComplete_ = find(handle, init, "curl_easy_init") && find(handle, set, "curl_easy_setopt") &&
                      find(handle, perform, "curl_easy_perform") && find(handle, info, "curl_easy_getinfo") &&
                      find(handle, reason, "curl_easy_strerror") && find(handle, cleanup, "curl_easy_cleanup") &&
                      find(handle, append, "curl_slist_append") && find(handle, freeList, "curl_slist_free_all");
        return;
      }
    }
    postLog.error("libcurl can't be loaded: {}", ::dlerror());
  }

  template <class Function>
  static bool find(void* handle, Function& function, const char* name) {
    function = reinterpret_cast<Function>(::dlsym(handle, name));
    return function != nullptr;
  }

  bool isComplete_ = false;
};

// Takes the body of an answer and forgets it; one that doesn't end is ended by taking nothing more.
std::size_t forget(const char*, std::size_t size, std::size_t count, void* total) {
  auto& received = *static_cast<std::size_t*>(total);
  received += size * count;
  return received <= longestAnswer ? size * count : 0;
}

} // namespace

std::optional<HttpAnswer> httpPost(const std::string& url, const std::vector<std::string>& headers,
                                   std::string_view body, std::chrono::milliseconds patience) {
  const Curl* const curl = Curl::shared();
  if (!curl)
    return std::nullopt;
  const std::unique_ptr<CURL, decltype(curl->cleanup)> request(curl->init(), curl->cleanup);
  if (!request)
    return std::nullopt;
  std::unique_ptr<curl_slist, decltype(curl->freeList)> lines(nullptr, curl->freeList);
  const auto addLine = [&](const std::string& line) {
    if (curl_slist* const longer = curl->append(lines.get(), line.c_str())) {
      static_cast<void>(lines.release());
      lines.reset(longer);
    }
  };
  for (const std::string& line : headers)
    addLine(line);
  addLine("Expect:"); // the body is small enough to be sent at once

  std::size_t received = 0;
  CURL* const handle = request.get();
  curl->set(handle, CURLOPT_URL, url.c_str());
  curl->set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl->set(handle, CURLOPT_HTTPHEADER, lines.get());
  curl->set(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
  curl->set(handle, CURLOPT_POSTFIELDS, body.data());
  curl->set(handle, CURLOPT_WRITEFUNCTION, forget);
  curl->set(handle, CURLOPT_WRITEDATA, &received);
  curl->set(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(patience.count()));
  curl->set(handle, CURLOPT_NOSIGNAL, 1L);

  const CURLcode outcome = curl->perform(handle);
  if (outcome != CURLE_OK && outcome != CURLE_WRITE_ERROR) {
    postLog.info("No answer: {}", curl->reason(outcome));
    return std::nullopt;
  }
  long status = 0;
  curl_off_t pause = 0;
  curl->info(handle, CURLINFO_RESPONSE_CODE, &status);
  curl->info(handle, CURLINFO_RETRY_AFTER, &pause);
  return HttpAnswer{.status = static_cast<int>(status),
                    .retryAfter = pause > 0 ? std::optional(std::chrono::seconds(pause)) : std::nullopt};
}

} // namespace tabwright::crashreport
