// One transfer at a time, driven here rather than by the library, so that the limits are looked at a few times a second
// whatever the server does. Redirects are followed here too, as each address has to be a secure one.
#include "updates/Download.h"

#include "platform/FileFailure.h"
#include "updates/Address.h"
#include "updates/UpdateCurl.h"
#include "updates/UpdateFault.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tabwright::updates {
namespace {

using platform::failure;

constexpr int mostRedirects = 5;
constexpr int transferPause = 100; // milliseconds
constexpr long found = 200;

using Take = std::function<void(std::string_view)>;

bool isRedirect(long status) {
  return status >= 300 && status < 400;
}

class Request {
public:
  Request(const std::string& address, std::uint64_t most, const Take& take)
      : easy_(curl_.easyInit(), curl_.easyCleanup), multi_(curl_.multiInit(), curl_.multiCleanup), most_(most),
        take_(take) {
    if (!easy_ || !multi_)
      throw std::bad_alloc();
    const bool isPlain = isOnThisMachine(address);
    set(CURLOPT_URL, address.c_str());
    set(CURLOPT_PROTOCOLS_STR, isPlain ? "http" : "https");
    if (isPlain)
      set(CURLOPT_PROXY, ""); // it would be another machine's loopback
    set(CURLOPT_USERAGENT, "tabwright");
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // nobody waits for a name server that hangs
    set(CURLOPT_ERRORBUFFER, error_);
    set(CURLOPT_WRITEFUNCTION, &Request::write);
    set(CURLOPT_WRITEDATA, this);
    curl_.multiAddHandle(multi_.get(), easy_.get());
  }
  ~Request() { curl_.multiRemoveHandle(multi_.get(), easy_.get()); }
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  /// The address that a redirect leads to; empty once all has been taken.
  std::string perform(const platform::CallLimits& limits) {
    const CURLcode code = finish(limits);
    if (failure_)
      std::rethrow_exception(failure_);
    if (isRedirect(status())) {
      char* target = nullptr;
      curl_.easyGetinfo(easy_.get(), CURLINFO_REDIRECT_URL, &target);
      if (target)
        return target;
    }
    if (status() != 0 && status() != found)
      throw failure(UpdateFault::refused, std::to_string(status()));
    if (code == CURLE_PARTIAL_FILE)
      throw failure(UpdateFault::truncated, std::to_string(taken_));
    if (code != CURLE_OK)
      throw failure(UpdateFault::unreachable, *error_ ? error_ : curl_.easyStrerror(code));
    return {};
  }

private:
  template <class Value>
  void set(CURLoption option, Value value) {
    if (const CURLcode code = curl_.easySetopt(easy_.get(), option, value); code != CURLE_OK)
      throw failure(UpdateFault::unreachable, curl_.easyStrerror(code));
  }

  long status() const {
    long status = 0;
    curl_.easyGetinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    return status;
  }

  CURLcode finish(const platform::CallLimits& limits) {
    for (;;) {
      int running = 0;
      CURLMcode code = curl_.multiPerform(multi_.get(), &running);
      int left = 0;
      if (const CURLMsg* message = curl_.multiInfoRead(multi_.get(), &left))
        return message->data.result;
      if (limits.stop.stop_requested())
        throw failure(UpdateFault::stopped);
      if (limits.hasPassed())
        throw failure(UpdateFault::timedOut);
      if (code == CURLM_OK)
        code = curl_.multiPoll(multi_.get(), nullptr, 0, transferPause, nullptr);
      if (code != CURLM_OK)
        throw failure(UpdateFault::unreachable, curl_.multiStrerror(code));
    }
  }

  // Called from C. Less than `size` taken ends the transfer; so does the body of an answer that isn't the thing itself.
  static std::size_t write(const char* bytes, std::size_t, std::size_t size, void* self) {
    Request& request = *static_cast<Request*>(self);
    if (request.status() != found)
      return 0;
    try {
      request.taken_ += size;
      if (request.taken_ > request.most_)
        throw failure(UpdateFault::tooLong, std::to_string(request.most_));
      request.take_({bytes, size});
      return size;
    } catch (...) {
      request.failure_ = std::current_exception();
      return 0;
    }
  }

  const platform::CurlLibrary& curl_ = requireCurl();
  const std::unique_ptr<CURL, void (*)(CURL*)> easy_;
  const std::unique_ptr<CURLM, CURLMcode (*)(CURLM*)> multi_;
  const std::uint64_t most_;
  const Take& take_;
  std::uint64_t taken_ = 0;
  std::exception_ptr failure_;
  char error_[CURL_ERROR_SIZE]{};
};

void fetch(std::string address, std::uint64_t most, const Take& take, const platform::CallLimits& limits) {
  requireSecure(address);
  for (int redirects = 0;; ++redirects) {
    std::string next = Request(address, most, take).perform(limits);
    if (next.empty())
      return;
    if (redirects == mostRedirects)
      throw failure(UpdateFault::unreachable, fmt::format("it redirects more than {} times", mostRedirects));
    requireSecure(next, address);
    address = std::move(next);
  }
}

platform::FileDescriptor unnamedFile() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  platform::FileDescriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (file.isOpen())
    return file;
  // Some file systems have no such files: then one loses its name at once.
  std::string name = (folder / "tabwright-update-XXXXXX").string();
  file = platform::FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!file.isOpen())
    throw platform::FileFailure("make a file in", folder, errno);
  ::unlink(name.c_str());
  return file;
}

void writeAll(const platform::FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.number(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR)
      throw platform::FileFailure("write", std::filesystem::temp_directory_path(), errno);
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
}

} // namespace

std::string fetchText(const std::string& address, std::size_t most, const platform::CallLimits& limits) {
  std::string text;
  fetch(address, most, [&text](std::string_view bytes) { text += bytes; }, limits);
  return text;
}

platform::FileDescriptor fetchFile(const std::string& address, std::uint64_t length,
                                   const platform::CallLimits& limits) {
  platform::FileDescriptor file = unnamedFile();
  std::uint64_t written = 0;
  const auto take = [&](std::string_view bytes) {
    writeAll(file, bytes);
    written += bytes.size();
  };
  fetch(address, length, take, limits);
  if (written != length)
    throw failure(UpdateFault::truncated, fmt::format("{} of {}", written, length));
  return file;
}

} // namespace tabwright::updates
