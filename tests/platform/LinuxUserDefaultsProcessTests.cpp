// Processes that write the same settings, and are killed at it. Children are forked from a process without threads.
#include "platform/DefaultsKey.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "support/LogCapture.h"
#include "support/SettingsFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tabwright::platform {
namespace {

template <class Work>
pid_t startChild(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  return child;
}

struct Pair {
  explicit Pair(const testsupport::SettingsFolder& folder) : defaults(folder.options()) {}

  // Both numbers go up together; a text of changing length moves everything about in the file.
  void increment() const {
    defaults.update([this](DefaultsChange& change) {
      const std::int64_t next = one.get(change) + 1;
      one.set(change, next);
      text.set(change, std::string(static_cast<std::size_t>(next * 37 % 5000), 'x'));
      other.set(change, next);
    });
  }

  mutable LinuxUserDefaults defaults;
  DefaultsKey<std::int64_t> one{defaults, "a", 0};
  DefaultsKey<std::string> text{defaults, "m", ""};
  DefaultsKey<std::int64_t> other{defaults, "z", 0};
};

// Measures a write, so that the instants of the kills fall into writes on a fast disk and a slow one.
std::chrono::nanoseconds timeOfAWrite(const Pair& pair) {
  constexpr int writes = 20;
  const auto start = std::chrono::steady_clock::now();
  for (int write = 0; write < writes; ++write)
    pair.increment();
  return (std::chrono::steady_clock::now() - start) / writes;
}

TEST(LinuxUserDefaultsProcess, AKilledWriterLeavesTheOldStateOrTheNew) {
  const testsupport::SettingsFolder folder;
  const testsupport::LogCapture log;
  const std::chrono::nanoseconds longest = 3 * timeOfAWrite(Pair(folder));
  std::mt19937_64 random(7);
  const std::int64_t first = Pair(folder).one.get();
  std::int64_t last = first;
  int killedWhileWriting = 0;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  for (int round = 0; round < 1000; ++round) {
    const pid_t child = startChild([&] {
      const Pair pair(folder);
      if (write(ready[1], "x", 1) != 1)
        return;
      for (;;)
        pair.increment();
    });
    ASSERT_GT(child, 0);
    char signal = 0;
    ASSERT_EQ(::read(ready[0], &signal, 1), 1);
    std::this_thread::sleep_for(longest * (random() % 1000) / 1000);
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));

    if (std::filesystem::exists(folder.file().parent_path()))
      killedWhileWriting += static_cast<int>(folder.filesWith(".new").size());
    const Pair pair(folder);
    const std::int64_t now = pair.one.get();
    ASSERT_EQ(pair.other.get(), now);
    ASSERT_EQ(pair.text.get().size(), static_cast<std::size_t>(now * 37 % 5000));
    ASSERT_GE(now, last);
    last = now;
  }
  close(ready[0]);
  close(ready[1]);
  EXPECT_GT(last, first);
  EXPECT_GT(killedWhileWriting, 0); // so the instants were such that they matter
  const Pair pair(folder);
  pair.increment();
  EXPECT_EQ(pair.one.get(), last + 1);
  EXPECT_THAT(folder.filesWith("settings"), testing::SizeIs(2)); // the file and its lock
  EXPECT_THAT(log.lines(), testing::IsEmpty());
}

TEST(LinuxUserDefaultsProcess, ManyProcessesLoseNoUpdate) {
  constexpr int processes = 8;
  constexpr int updates = 40;
  const testsupport::SettingsFolder folder;
  std::vector<pid_t> children;
  for (int process = 0; process < processes; ++process) {
    children.push_back(startChild([&folder, process] {
      const Pair pair(folder);
      for (int round = 0; round < updates; ++round) {
        if (process % 2 == 0)
          pair.increment();
        else
          pair.one.updateSoon([](std::int64_t value) { return value + 1; });
      }
    }));
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(Pair(folder).one.get(), processes * updates);
}

} // namespace
} // namespace tabwright::platform
