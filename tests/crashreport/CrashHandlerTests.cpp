#include "crashreport/CrashHandler.h"
#include "crashreport/CrashRecord.h"
#include "crashreport/ReportSpool.h"
#include "platform/WorkerThreads.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// The crashes happen as the processor has them, not as sanitizers report them.
#define TABWRIGHT_CRASHES __attribute__((no_sanitize("address", "undefined", "thread"), noinline))

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TABWRIGHT_UNDER_THREAD_SANITIZER
#endif
#endif

/// Processes that crash on purpose, and what they leave.
namespace tabwright::crashreport {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testsupport::ScratchFolder;

const ProgramFacts crashingProgram{.releaseName = "9.9 (9)", .dist = "9", .environment = "Test"};

#ifdef TABWRIGHT_UNDER_THREAD_SANITIZER
constexpr bool isUnderThreadSanitizer = true;
#else
[[maybe_unused]] constexpr bool isUnderThreadSanitizer = false;
#endif

volatile int sink = 0;
const volatile std::uintptr_t nowhere = 0x1000;

char* pagesBeyondAFile() {
  const int file = ::memfd_create("empty", 0);
  void* const pages = ::mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  ::close(file);
  return static_cast<char*>(pages);
}

TABWRIGHT_CRASHES void readNowhere() {
  sink = *reinterpret_cast<const volatile int*>(nowhere);
}
TABWRIGHT_CRASHES void readBeyondAFile() {
  sink = *const_cast<const volatile char*>(pagesBeyondAFile());
}
TABWRIGHT_CRASHES void divideByNothing() {
#if defined(__x86_64__)
  const volatile int something = 1000;
  const volatile int nothing = 0;
  sink = something / nothing;
#else
  ::raise(SIGFPE);
#endif
}
TABWRIGHT_CRASHES void runNonsense() {
  __builtin_trap();
}
TABWRIGHT_CRASHES void abortAll() {
  std::abort();
}
TABWRIGHT_CRASHES void throwUncaught() {
  std::thread([] { throw std::runtime_error("telling"); }).join();
}
TABWRIGHT_CRASHES int runDeep(int depth) {
  volatile char room[2048];
  room[0] = static_cast<char>(depth);
  return sink < 0 ? 0 : runDeep(depth + 1) + room[0];
}
TABWRIGHT_CRASHES void overflow() {
  sink = runDeep(0);
}
#if defined(__x86_64__)
// The handler, which runs on its own stack, finds the registers pointing to memory that can't be read.
TABWRIGHT_CRASHES void crashTheHandlerToo() {
  char* const pages = pagesBeyondAFile() + 4096;
  asm volatile("mov %0, %%rsp\n\tmov %0, %%rbp\n\tud2" : : "r"(pages));
}
#endif

/// Somebody who calls: its frame is to be found.
TABWRIGHT_CRASHES void call(void (*crash)()) {
  crash();
  sink = 1;
}

class CrashHandlerTest : public ::testing::Test {
protected:
  enum class Handler { installed, missing };

  /// The status of a process that does this (waitpid(2)), with a handler or without.
  int statusOf(const std::function<void()>& deed, Handler handler = Handler::installed) const {
    const pid_t child = ::fork();
    if (child == 0) {
      for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) // sanitizers have handlers of their own
        std::signal(signal, SIG_DFL);
      rlimit cores{};
      ::getrlimit(RLIMIT_CORE, &cores);
      cores.rlim_cur = wantsCores ? cores.rlim_max : 0;
      ::setrlimit(RLIMIT_CORE, &cores);
      if (::chdir(scratch.path().c_str()) != 0)
        ::_exit(99);
      const ReportSpool spool(folder);
      std::unique_ptr<CrashHandler> own;
      if (handler == Handler::installed)
        own = std::make_unique<CrashHandler>(spool, crashingProgram);
      deed();
      own.reset();
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
  }

  /// The record that is there, of which there must be one at most.
  [[nodiscard]] std::optional<CrashRecord> record() const {
    const ReportSpool spool(folder);
    const auto names = spool.names(ReportSpool::crashEnding);
    EXPECT_LE(names.size(), 1U);
    return names.empty() ? std::nullopt : CrashRecord::parse(spool.read(names.front()).value_or(""));
  }
  void forget() const { fs::remove_all(folder); }

  bool wantsCores = false; ///< dumps take time
  ScratchFolder scratch;
  fs::path folder = scratch / "reports";
};

template <class Function>
auto liesIn(Function* function) {
  const auto start = reinterpret_cast<std::uintptr_t>(function);
  return ::testing::Field(&StackFrame::address,
                          ::testing::AllOf(::testing::Ge(start), ::testing::Lt(start + 300))); // they are short
}

TEST_F(CrashHandlerTest, RecordsEachSignalAndLetsItEndTheProcessAsBefore) {
  wantsCores = true;
  struct Crash {
    void (*deed)();
    int signal;
  };
  for (const auto& [deed, signal] :
       {Crash{readNowhere, SIGSEGV}, Crash{readBeyondAFile, SIGBUS}, Crash{divideByNothing, SIGFPE},
        Crash{runNonsense, SIGILL}, Crash{abortAll, SIGABRT}, Crash{[] { ::kill(::getpid(), SIGSEGV); }, SIGSEGV}}) {
    const auto crash = [deed = deed] { call(deed); };
    const int status = statusOf(crash);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_EQ(status, statusOf(crash, Handler::missing)); // a core dump counts
    const auto left = record();
    ASSERT_TRUE(left) << signal;
    EXPECT_EQ(left->signal, signal);
    EXPECT_EQ(left->program.releaseName, "9.9 (9)");
    EXPECT_THAT(left->frames, Contains(liesIn(call))) << signal;
    if (signal != SIGABRT && signal != SIGSEGV) {
      EXPECT_EQ(left->frames.front().origin, 'c');
      EXPECT_THAT(left->frames.front(), liesIn(deed)) << signal;
    }
    forget();
  }
}

TEST_F(CrashHandlerTest, RecordsAStackThatHasOverflowed) {
  const auto onThreadOfScripts = [] {
    platform::WorkerThreads threads;
    threads.start(threads.prepare([](const std::stop_token&) { call(overflow); }));
    ::pause();
  };
  for (const std::function<void()>& deed :
       {std::function<void()>([] { call(overflow); }), std::function<void()>(onThreadOfScripts)}) {
    const int status = statusOf(deed);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << status;
    const auto left = record();
    ASSERT_TRUE(left);
    EXPECT_THAT(left->frames, SizeIs(CrashRecord::mostFrames));
    EXPECT_THAT(left->frames.back(), liesIn(runDeep));
    forget();
  }
}

TEST_F(CrashHandlerTest, RecordsTheThreadThatCrashed) {
  const int status = statusOf([] { std::thread([] { call(readNowhere); }).join(); });
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << status;
  auto left = record();
  ASSERT_TRUE(left);
  EXPECT_THAT(left->frames, Contains(liesIn(call)));
  forget();

  EXPECT_EQ(WTERMSIG(statusOf(throwUncaught)), SIGABRT);
  left = record();
  ASSERT_TRUE(left);
  EXPECT_THAT(left->frames, Contains(::testing::Field(&StackFrame::origin, 'f')));
}

TEST_F(CrashHandlerTest, RecordsOneOfManyThreadsThatCrashAtOnce) {
  for (int round = 0; round < 20; ++round) {
    const int status = statusOf([] {
      std::atomic<int> waiting = 4;
      std::array<std::thread, 4> threads;
      for (std::thread& thread : threads) {
        thread = std::thread([&waiting] {
          --waiting;
          while (waiting != 0)
            ;
          call(readNowhere);
        });
      }
      for (std::thread& thread : threads)
        thread.join();
    });
    ASSERT_EQ(WTERMSIG(status), SIGSEGV);
    const auto left = record();
    ASSERT_TRUE(left);
    EXPECT_THAT(left->frames, Contains(liesIn(call)));
    forget();
  }
}

#if defined(__x86_64__)
TEST_F(CrashHandlerTest, LeavesWhatItHasWhenItCrashesItself) {
  if (isUnderThreadSanitizer)
    GTEST_SKIP() << "ThreadSanitizer's own handler, which calls ours, does not survive this";
  const int status = statusOf([] { call(crashTheHandlerToo); });
  EXPECT_TRUE(WIFSIGNALED(status)) << status;
  const auto left = record();
  ASSERT_TRUE(left);
  EXPECT_EQ(left->signal, SIGILL);
}
#endif

TEST_F(CrashHandlerTest, LeavesNothingOfAProcessThatDoesNotCrash) {
  EXPECT_EQ(statusOf([] {}), 0);
  EXPECT_THAT(fs::directory_iterator(folder), ::testing::Eq(fs::directory_iterator()));
  EXPECT_EQ(WTERMSIG(statusOf([] { ::kill(::getpid(), SIGKILL); })), SIGKILL);
  EXPECT_FALSE(record()); // and what it might have become is gone
  EXPECT_THAT(fs::directory_iterator(folder), ::testing::Eq(fs::directory_iterator()));

  // A process that was forked off is none of the handler's.
  EXPECT_EQ(statusOf([] {
              const pid_t child = ::fork();
              if (child == 0)
                readNowhere();
              int status = 0;
              ::waitpid(child, &status, 0);
              if (WTERMSIG(status) != SIGSEGV)
                ::_exit(98);
            }),
            0);
  EXPECT_FALSE(record());
}

TEST_F(CrashHandlerTest, HandsOnToTheHandlerThatWasThere) {
  const int status = statusOf([this] {
    std::signal(SIGSEGV, [](int) { ::_exit(42); });
    std::signal(SIGFPE, SIG_IGN);
    const ReportSpool spool(folder);
    const CrashHandler handler(spool, crashingProgram);
    ::raise(SIGFPE);
    readNowhere();
  });
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42) << status;
  EXPECT_EQ(record()->signal, SIGSEGV);
}

} // namespace
} // namespace tabwright::crashreport
