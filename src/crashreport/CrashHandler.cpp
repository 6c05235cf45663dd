// The state that the handler uses lies in one static object: plain values, set before the handlers are installed. The
// record gets the line of the crash before any memory is looked at, so that a second crash on the way still leaves
// that.
//
// Functions named `…InSignal` run in the handler: they call nothing but system calls, and touch nothing but that object
// and their own stack.
#include "crashreport/CrashHandler.h"

#include "crashreport/CrashRecord.h"
#include "crashreport/LoadedModules.h"
#include "crashreport/StackWalk.h"
#include "platform/FileFailure.h"
#include "platform/linux/SignalStack.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace tabwright::crashreport {
namespace {

using platform::FileFailure;

constexpr std::array<int, 5> crashSignals{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

struct HandlerState {
  int folder = -1;
  int record = -1;
  const char* pendingName = nullptr;
  const char* crashName = nullptr;
  AddressRange program;
  pid_t process = 0;
  std::array<struct sigaction, crashSignals.size()> former{};
  std::atomic<pid_t> handlingThread = 0; ///< 0 while there is no crash
  std::atomic<bool> isRecorded = false;
  std::array<StackFrame, CrashRecord::mostFrames> frames{};
};
static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

HandlerState state;

/// A line that is put together without allocating anything.
class Line {
public:
  Line& text(const char* characters) noexcept {
    while (*characters)
      put(*characters++);
    return *this;
  }
  Line& number(std::uint64_t value, unsigned base) noexcept {
    char digits[20]; // of 2^64
    std::size_t count = 0;
    do {
      const unsigned digit = static_cast<unsigned>(value % base);
      digits[count++] = static_cast<char>(digit < 10 ? '0' + digit : 'a' + (digit - 10));
      value /= base;
    } while (value != 0);
    while (count != 0)
      put(digits[--count]);
    return *this;
  }
  Line& signedNumber(int value) noexcept {
    if (value < 0)
      put('-');
    return number(value < 0 ? -static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value), 10);
  }
  Line& put(char character) noexcept {
    if (size_ < sizeof bytes_)
      bytes_[size_++] = character;
    return *this;
  }
  void writeTo(int file) const noexcept {
    std::size_t written = 0;
    while (written < size_) {
      const ssize_t count = ::write(file, bytes_ + written, size_ - written);
      if (count < 0 && errno == EINTR)
        continue;
      if (count <= 0)
        return; // the disk is full: what is there will do
      written += static_cast<std::size_t>(count);
    }
  }

private:
  char bytes_[96];
  std::size_t size_ = 0;
};

pid_t threadInSignal() noexcept {
  return static_cast<pid_t>(::syscall(SYS_gettid));
}

// Whatever has been written by now becomes the record. It isn't forced to the disk, as the end of a process loses
// nothing that was written.
void finishRecordInSignal() noexcept {
  ::renameat(state.folder, state.pendingName, state.folder, state.crashName);
  state.isRecorded = true; // threads that wait for this end the process
}

void recordInSignal(int signal, const siginfo_t* facts, const void* context) noexcept {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  Line()
      .text("crash ")
      .signedNumber(signal)
      .put(' ')
      .signedNumber(facts ? facts->si_code : 0)
      .put(' ')
      .number(static_cast<std::uint64_t>(now.tv_sec), 10)
      .put('\n')
      .writeTo(state.record);
  const std::size_t count = walkStack(registersOf(context), state.program, state.frames);
  for (std::size_t index = 0; index < count; ++index) {
    const StackFrame& frame = state.frames[index];
    Line().text("frame ").put(frame.origin).put(' ').number(frame.address, 16).put('\n').writeTo(state.record);
  }
}

/// Another thread is recording its crash; this one gives it a little time, since the process ends with either.
void awaitRecordInSignal() noexcept {
  constexpr timespec step{.tv_sec = 0, .tv_nsec = 10'000'000};
  for (int steps = 0; steps < 200 && !state.isRecorded; ++steps)
    ::nanosleep(&step, nullptr);
}

void passOnInSignal(int signal, const siginfo_t* facts) noexcept {
  for (std::size_t index = 0; index < crashSignals.size(); ++index) {
    if (crashSignals[index] == signal)
      ::sigaction(signal, &state.former[index], nullptr);
  }
  // An instruction that failed fails again as soon as this returns. What was sent is sent once more.
  if (!facts || facts->si_code <= 0)
    ::syscall(SYS_tgkill, ::getpid(), threadInSignal(), signal);
}

void handleInSignal(int signal, siginfo_t* facts, void* context) {
  const int error = errno;
  if (::getpid() == state.process) {
    pid_t nobody = 0;
    const pid_t self = threadInSignal();
    if (state.handlingThread.compare_exchange_strong(nobody, self)) {
      recordInSignal(signal, facts, context);
      finishRecordInSignal();
    } else if (nobody == self) {
      finishRecordInSignal();
    } else {
      awaitRecordInSignal();
    }
  }
  passOnInSignal(signal, facts);
  errno = error;
}

void install() {
  struct sigaction action{};
  action.sa_sigaction = handleInSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (std::size_t index = 0; index < crashSignals.size(); ++index) {
    ::sigaction(crashSignals[index], nullptr, &state.former[index]);
    if (state.former[index].sa_handler != SIG_IGN)
      ::sigaction(crashSignals[index], &action, nullptr);
  }
}

void uninstall() {
  for (std::size_t index = 0; index < crashSignals.size(); ++index)
    ::sigaction(crashSignals[index], &state.former[index], nullptr);
}

} // namespace

CrashHandler::CrashHandler(const ReportSpool& spool, const ProgramFacts& program)
    : spool_(spool), pendingName_(ReportSpool::newName(ReportSpool::pendingEnding)),
      crashName_(pendingName_.substr(0, pendingName_.size() - ReportSpool::pendingEnding.size())
                     .append(ReportSpool::crashEnding)),
      record_(spool.makeHeldFile(pendingName_)) {
  const std::vector<Module> modules = loadedModules();
  const std::string head = crashRecordHead(program, modules);
  if (const ssize_t written = ::write(record_.number(), head.data(), head.size());
      written != static_cast<ssize_t>(head.size())) {
    const int error = written < 0 ? errno : ENOSPC;
    spool_.remove(pendingName_);
    throw FileFailure("write", spool_.path() / pendingName_, error);
  }
  platform::ensureSignalStack();
  state.folder = spool_.descriptor();
  state.record = record_.number();
  state.pendingName = pendingName_.c_str();
  state.crashName = crashName_.c_str();
  state.program = modules.empty()
                      ? AddressRange{}
                      : AddressRange{static_cast<std::uintptr_t>(modules.front().address),
                                     static_cast<std::uintptr_t>(modules.front().address + modules.front().size)};
  state.process = ::getpid();
  state.handlingThread = 0;
  state.isRecorded = false;
  install();
}

CrashHandler::~CrashHandler() {
  uninstall();
  spool_.remove(pendingName_);
}

} // namespace tabwright::crashreport
