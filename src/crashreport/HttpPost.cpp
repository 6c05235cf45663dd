#include "crashreport/HttpPost.h"

#include "platform/Logger.h"
#include "platform/linux/CurlLibrary.h"

#include <cstddef>
#include <memory>

namespace tabwright::crashreport {
namespace {

const platform::Logger postLog("HttpPost");

constexpr std::size_t longestAnswer = std::size_t{64} << 10;

// Takes the body of an answer and forgets it; one that doesn't end is ended by taking nothing more.
std::size_t forget(const char*, std::size_t size, std::size_t count, void* total) {
  auto& received = *static_cast<std::size_t*>(total);
  received += size * count;
  return received <= longestAnswer ? size * count : 0;
}

} // namespace

std::optional<HttpAnswer> httpPost(const std::string& url, const std::vector<std::string>& headers,
                                   std::string_view body, std::chrono::milliseconds patience) {
  const platform::CurlLibrary* const curl = platform::CurlLibrary::shared();
  if (!curl) {
    postLog.error("libcurl can't be loaded: {}", platform::CurlLibrary::whyMissing());
    return std::nullopt;
  }
  const std::unique_ptr<CURL, decltype(curl->easyCleanup)> request(curl->easyInit(), curl->easyCleanup);
  if (!request)
    return std::nullopt;
  std::unique_ptr<curl_slist, decltype(curl->listFree)> lines(nullptr, curl->listFree);
  const auto addLine = [&](const std::string& line) {
    if (curl_slist* const longer = curl->listAppend(lines.get(), line.c_str())) {
      static_cast<void>(lines.release());
      lines.reset(longer);
    }
  };
  for (const std::string& line : headers)
    addLine(line);
  addLine("Expect:"); // the body is small enough to be sent at once

  std::size_t received = 0;
  CURL* const handle = request.get();
  curl->easySetopt(handle, CURLOPT_URL, url.c_str());
  curl->easySetopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl->easySetopt(handle, CURLOPT_HTTPHEADER, lines.get());
  curl->easySetopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
  curl->easySetopt(handle, CURLOPT_POSTFIELDS, body.data());
  curl->easySetopt(handle, CURLOPT_WRITEFUNCTION, forget);
  curl->easySetopt(handle, CURLOPT_WRITEDATA, &received);
  curl->easySetopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(patience.count()));
  curl->easySetopt(handle, CURLOPT_NOSIGNAL, 1L);

  const CURLcode outcome = curl->easyPerform(handle);
  if (outcome != CURLE_OK && outcome != CURLE_WRITE_ERROR) {
    postLog.info("No answer: {}", curl->easyStrerror(outcome));
    return std::nullopt;
  }
  long status = 0;
  curl_off_t pause = 0;
  curl->easyGetinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  curl->easyGetinfo(handle, CURLINFO_RETRY_AFTER, &pause);
  return HttpAnswer{.status = static_cast<int>(status),
                    .retryAfter = pause > 0 ? std::optional(std::chrono::seconds(pause)) : std::nullopt};
}

} // namespace tabwright::crashreport
