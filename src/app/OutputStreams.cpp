// The streams that the whole program writes to get buffers of ours, so that no text finds a way around them. Text is
// held until there is enough of it or somebody flushes, as what a terminal may get is judged by whole characters: one
// that was cut in two would come out as two that are none.
#include "app/OutputStreams.h"

#include "client/StandardStreams.h"
#include "platform/Mutex.h"

#include <iostream>
#include <streambuf>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace tabwright::app {
namespace {

constexpr std::size_t enough = 1 << 16;

/// The bytes at the end that begin a character of UTF-8 and don't end it.
std::size_t unfinished(std::string_view text) {
  for (std::size_t back = 1; back <= 3 && back <= text.size(); ++back) {
    const auto byte = static_cast<unsigned char>(text[text.size() - back]);
    if ((byte & 0xC0U) == 0x80)
      continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

} // namespace

class OutputStreams::Buffer final : public std::streambuf {
public:
  enum class OnError { ignore, raise };

  Buffer(std::ostream& stream, int descriptor, OnError onError)
      : stream_(stream), former_(stream.rdbuf(this)), descriptor_(descriptor), onError_(onError) {}
  ~Buffer() override { stream_.rdbuf(former_); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

private:
  // There is no put area, so single characters come here.
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof()))
      return traits_type::not_eof(character);
    const char byte = traits_type::to_char_type(character);
    xsputn(&byte, 1);
    return character;
  }

  std::streamsize xsputn(const char* text, std::streamsize count) override {
    const platform::MutexLock lock(mutex_);
    held_.append(text, static_cast<std::size_t>(count));
    // The begin of a character waits for its end.
    if (held_.size() >= enough)
      write(held_.size() - unfinished(held_));
    return count;
  }

  int sync() override {
    const platform::MutexLock lock(mutex_);
    write(held_.size());
    return 0;
  }

  void write(std::size_t count) REQUIRES(mutex_) {
    // Taken out before it is written: what fails is lost, and isn't tried again.
    std::string text = held_.substr(0, count);
    held_.erase(0, count);
    const int error = client::writeText(descriptor_, text);
    if (error != 0 && onError_ == OnError::raise)
      throw OutputLost(error);
  }

  std::ostream& stream_;
  std::streambuf* const former_;
  const int descriptor_;
  const OnError onError_;
  platform::Mutex mutex_; // the log comes from any thread
  std::string held_ GUARDED_BY(mutex_);
};

OutputLost::OutputLost(int errorNumber) : errorNumber_(errorNumber), sentence_(client::notWritten(errorNumber)) {}

OutputStreams::OutputStreams()
    : output_(std::make_unique<Buffer>(std::cout, STDOUT_FILENO, Buffer::OnError::raise)),
      error_(std::make_unique<Buffer>(std::cerr, STDERR_FILENO, Buffer::OnError::ignore)) {
  std::cout.exceptions(std::ios::badbit); // it passes on what its buffer throws
  std::cerr.tie(nullptr);                 // an error can be told when standard output can't be written
}

OutputStreams::~OutputStreams() {
  try {
    std::cout.flush();
  } catch (const std::exception&) {
  }
  std::cerr.flush();
  std::cout.exceptions(std::ios::goodbit);
}

} // namespace tabwright::app
