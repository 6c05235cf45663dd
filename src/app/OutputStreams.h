#pragma once

#include "platform/Failure.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace tabwright::app {

/// Standard output takes no more. It is no failure of an action or a step, so that no workflow goes on after it; the
/// command line reports it as an OutputFailure.
class OutputLost final : public std::exception {
public:
  /// `errorNumber` is an errno value, EPIPE where the reader has gone.
  explicit OutputLost(int errorNumber);
  /// The errno value, for whoever ends otherwise for a reader that has gone.
  [[nodiscard]] int errorNumber() const noexcept { return errorNumber_; }
  [[nodiscard]] const char* what() const noexcept override { return sentence_.c_str(); }

private:
  int errorNumber_;
  std::string sentence_;
};

/// The same as a failure that can be reported; `number` of its identity is the errno value.
class OutputFailure final : public platform::Failure {
public:
  // NOLINTNEXTLINE(bugprone-throw-keyword-missing): a member, not a thrown one that was forgotten
  explicit OutputFailure(OutputLost lost) : lost_(std::move(lost)) {}
  [[nodiscard]] std::string errorDescription() const override { return lost_.what(); }
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"OutputFailure", "notWritten", lost_.errorNumber()};
  }

private:
  OutputLost lost_;
};

/// While it lives, `std::cout` and `std::cerr` write as client/StandardStreams.h does: what reaches a terminal can't
/// steer it. `std::cout` throws OutputLost, as it is written to or flushed; errors on `std::cerr` are of no interest to
/// anybody.
///
/// One at a time, made before there are other threads.
class OutputStreams {
public:
  /// Puts the buffers in. `std::cerr` no longer flushes `std::cout` first: an error can be told when the output is
  /// lost.
  OutputStreams();
  /// Flushes without a word: whoever wants to know of a failure flushes before.
  ~OutputStreams();
  OutputStreams(const OutputStreams&) = delete;
  OutputStreams& operator=(const OutputStreams&) = delete;

private:
  class Buffer;
  std::unique_ptr<Buffer> output_;
  std::unique_ptr<Buffer> error_;
};

} // namespace tabwright::app
