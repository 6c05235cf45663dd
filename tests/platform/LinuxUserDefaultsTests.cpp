#include "platform/DefaultsKey.h"
#include "platform/Mutex.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "support/LogCapture.h"
#include "support/SettingsFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace tabwright::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::int64_t plusOne(std::int64_t value) {
  return value + 1;
}

struct Store {
  explicit Store(const testsupport::SettingsFolder& folder, LinuxUserDefaultsOptions options)
      : defaults(std::move(options)), file(folder.file()) {}
  explicit Store(const testsupport::SettingsFolder& folder) : Store(folder, folder.options()) {}

  mutable LinuxUserDefaults defaults;
  std::filesystem::path file;
  DefaultsKey<std::int64_t> count{defaults, "c0000001", 7};
  DefaultsKey<double> time{defaults, "c0000002", 0.5};
  DefaultsKey<bool> flag{defaults, "c0000003", true};
  DefaultsKey<std::string> text{defaults, "c0000004", "none"};
  DefaultsKey<std::map<std::string, std::string>> texts{defaults, "c0000005", {}};
};

class LinuxUserDefaultsTest : public testing::Test {
protected:
  testsupport::SettingsFolder folder;
  testsupport::LogCapture log;
};

TEST_F(LinuxUserDefaultsTest, ReadsDefaultsWithoutAWrite) {
  const Store store(folder);
  EXPECT_EQ(store.count.get(), 7);
  EXPECT_EQ(store.time.get(), 0.5);
  EXPECT_EQ(store.flag.get(), true);
  EXPECT_EQ(store.text.get(), "none");
  EXPECT_THAT(store.texts.get(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(folder.file().parent_path()));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxUserDefaultsTest, KeepsValuesForTheNextProcessInAFileOfTheOwnerAlone) {
  {
    const Store store(folder);
    store.count.set(-3);
    store.time.set(1234.25);
    store.flag.set(false);
    store.text.set("4 < 5");
    store.texts.set({{"com.apple.safari:17", "mail"}});
  }
  const Store store(folder);
  EXPECT_EQ(store.count.get(), -3);
  EXPECT_EQ(store.time.get(), 1234.25);
  EXPECT_EQ(store.flag.get(), false);
  EXPECT_EQ(store.text.get(), "4 < 5");
  EXPECT_EQ(store.texts.get().at("com.apple.safari:17"), "mail");
  EXPECT_THAT(folder.content(), HasSubstr("<key>c0000004</key>\n\t<string>4 &lt; 5</string>"));

  struct stat facts{};
  ASSERT_EQ(stat(folder.file().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777u, 0600u);
  ASSERT_EQ(stat(folder.file().parent_path().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777u, 0700u);
}

TEST_F(LinuxUserDefaultsTest, SeesEveryChangeOfAnotherStore) {
  // In memory many writes fall into one tick of the file's time; they don't change its length either.
  const std::filesystem::path memory = "/dev/shm";
  const testsupport::SettingsFolder folder(
      std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path());
  const Store writer(folder);
  const Store reader(folder);
  for (int round = 0; round < 200; ++round) {
    writer.count.set(round % 10);
    ASSERT_EQ(reader.count.get(), round % 10) << round;
  }
  reader.count.update(plusOne);
  EXPECT_EQ(writer.count.get(), 10);
  std::filesystem::remove(folder.file()); // the user takes the settings away
  EXPECT_EQ(writer.count.get(), 7);
}

TEST_F(LinuxUserDefaultsTest, WritesNothingThatIsThereAlready) {
  const Store store(folder);
  store.count.set(1);
  const auto first = std::filesystem::last_write_time(folder.file());
  store.count.set(1);
  store.defaults.update([](DefaultsChange&) {});
  EXPECT_EQ(std::filesystem::last_write_time(folder.file()), first);
}

TEST_F(LinuxUserDefaultsTest, ChangesSeveralKeysInOneStep) {
  const Store store(folder);
  store.defaults.update([&store](DefaultsChange& change) {
    store.count.set(change, store.count.get(change) + 1);
    EXPECT_EQ(store.count.get(change), 8); // its own write
    store.flag.set(change, false);
  });
  EXPECT_EQ(store.count.get(), 8);
  EXPECT_EQ(store.flag.get(), false);
}

TEST_F(LinuxUserDefaultsTest, SetsADamagedFileAside) {
  for (const std::string damaged : {"", "<plist><dict><key>c0000001</key><integer>4", "<plist><array/></plist>"}) {
    const testsupport::SettingsFolder own;
    own.write(damaged);
    const Store store(own);
    EXPECT_EQ(store.count.get(), 7);
    EXPECT_TRUE(log.holds("error UserDefaults: The settings “" + own.file().string() + "” are damaged: defaults hold"));
    EXPECT_EQ(own.content(), damaged); // readers touch nothing
    store.count.update(plusOne);
    EXPECT_EQ(Store(own).count.get(), 8);

    const std::filesystem::path aside = own.file().string() + ".damaged-1";
    EXPECT_TRUE(log.holds("error UserDefaults: Set the settings “" + own.file().string() +
                          "”, not all of which can be read, aside as “" + aside.string() + "”"));
    std::filesystem::rename(aside, own.file());
    EXPECT_EQ(own.content(), damaged); // kept as it was
  }
}

TEST_F(LinuxUserDefaultsTest, KeepsTheLastThreeFilesSetAside) {
  const Store store(folder);
  for (const std::string damaged : {"one", "two", "three", "four"}) {
    folder.write(damaged);
    store.count.update(plusOne);
  }
  EXPECT_THAT(folder.filesWith(".damaged-"), SizeIs(3));
  std::filesystem::rename(folder.file().string() + ".damaged-3", folder.file());
  EXPECT_EQ(folder.content(), "two");
}

TEST_F(LinuxUserDefaultsTest, AValueOfAnotherTypeSpoilsItsOwnKeyOnly) {
  folder.write("<plist version=\"1.0\"><dict><key>c0000001</key><string>12</string>"
               "<key>c0000002</key><integer>3</integer><key>c0000003</key><integer>0</integer><key>c0000004</"
               "key><string>kept</string>"
               "<key>c0000005</key><dict><key>a</key><integer>1</integer></dict></dict></plist>");
  const Store store(folder);
  EXPECT_EQ(store.count.get(), 7);
  EXPECT_EQ(store.count.get(), 7);
  EXPECT_EQ(store.time.get(), 3.0); // a whole number is a number
  EXPECT_EQ(store.flag.get(), true);
  EXPECT_THAT(store.texts.get(), IsEmpty());
  EXPECT_EQ(store.text.get(), "kept");
  EXPECT_THAT(log.linesOf("error UserDefaults: The stored value of c0000001 is of another type: its default holds"),
              SizeIs(1));

  store.text.set("also kept"); // leaves the others as they are
  EXPECT_THAT(folder.content(), HasSubstr("<string>12</string>"));
  EXPECT_THAT(folder.filesWith(".damaged-"), IsEmpty());
  store.count.update(plusOne);
  EXPECT_EQ(Store(folder).count.get(), 8);
  EXPECT_THAT(folder.filesWith(".damaged-"), SizeIs(1));
}

TEST_F(LinuxUserDefaultsTest, AWriterWaitsForTheLockNoLongerThanItMay) {
  LinuxUserDefaultsOptions options = folder.options();
  options.lockWait = std::chrono::milliseconds(1);
  const Store store(folder, options);
  store.count.set(1);
  const int lock = open((folder.file().string() + ".lock").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0); // as a stopped process would hold it

  store.count.update(plusOne);
  store.count.update(plusOne);
  EXPECT_EQ(store.count.get(), 3);         // holds here …
  EXPECT_EQ(Store(folder).count.get(), 1); // … and not yet on the disk
  EXPECT_THAT(log.lines(), ElementsAre("error UserDefaults: Couldn't lock “" + folder.file().string() +
                                       ".lock”: Resource temporarily unavailable"));

  ASSERT_EQ(flock(lock, LOCK_UN), 0);
  Store(folder).count.set(10); // by another process
  EXPECT_EQ(store.count.get(), 12);
  store.text.set("x");
  EXPECT_EQ(Store(folder).count.get(), 12); // made up for, on top of what the other wrote
  close(lock);
}

TEST_F(LinuxUserDefaultsTest, AFullDiskLosesNothing) {
  const Store store(folder);
  store.count.set(1);
  const std::string before = folder.content();
  struct rlimit old{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const struct rlimit none{.rlim_cur = 0, .rlim_max = old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  store.count.update(plusOne);
  store.count.update(plusOne);
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, oldHandler);

  EXPECT_EQ(folder.content(), before);
  EXPECT_EQ(store.count.get(), 3);
  EXPECT_THAT(folder.filesWith(".new"), IsEmpty());
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("Couldn't write")));
  store.count.update(plusOne);
  EXPECT_EQ(Store(folder).count.get(), 4);
}

TEST_F(LinuxUserDefaultsTest, APlaceThatCannotBeWrittenIsToldOnceAndNeverOverwritten) {
  std::ofstream(folder.file().parent_path()) << "a file where the folder should be";
  {
    const Store store(folder);
    store.count.update(plusOne);
    store.count.updateSoon(plusOne);
    const DefaultsObservation observation = store.count.observe([] {});
    EXPECT_EQ(store.count.get(), 9);
    EXPECT_EQ(store.text.get(), "none");
  }
  EXPECT_EQ(std::filesystem::file_size(folder.file().parent_path()), 33u);
  EXPECT_THAT(log.linesOf("error"), testing::Each(HasSubstr("Not a directory")));
  EXPECT_LE(log.lines().size(), 4u);

  const testsupport::SettingsFolder other;
  std::filesystem::create_directories(other.file()); // a folder where the file should be
  const Store store(other);
  store.count.update(plusOne);
  EXPECT_EQ(store.count.get(), 8);
  EXPECT_TRUE(std::filesystem::is_directory(other.file()));
}

TEST_F(LinuxUserDefaultsTest, GivesUpTheOldestOfTooManyChangesAndSaysSo) {
  std::filesystem::create_directories(folder.file());
  const Store store(folder);
  for (int round = 0; round < 1002; ++round)
    store.count.update(plusOne);
  EXPECT_EQ(store.count.get(), 1009);
  EXPECT_THAT(log.linesOf("error UserDefaults: More than 1000 changes"), SizeIs(1));
  std::filesystem::remove(folder.file());
  store.text.set("x");
  EXPECT_EQ(Store(folder).count.get(), 7 + 1000 - 1);
}

TEST_F(LinuxUserDefaultsTest, FollowsALinkToTheFile) {
  std::filesystem::create_directories(folder.file().parent_path());
  const std::filesystem::path target = folder.path() / "dotfiles.plist";
  std::ofstream(target) << "<plist version=\"1.0\"><dict/></plist>";
  std::filesystem::create_symlink(target, folder.file());
  Store(folder).count.set(5);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file()));
  EXPECT_EQ(Store(folder).count.get(), 5);
}

TEST_F(LinuxUserDefaultsTest, ALateUpdateShowsAtOnceAndIsOnTheDiskWhenTheStoreEnds) {
  {
    const Store store(folder);
    for (int round = 0; round < 100; ++round)
      store.count.updateSoon(plusOne);
    EXPECT_EQ(store.count.get(), 107);
  }
  EXPECT_EQ(Store(folder).count.get(), 107);
}

TEST_F(LinuxUserDefaultsTest, ManyThreadsLoseNoUpdate) {
  const Store store(folder);
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 8; ++thread) {
      threads.emplace_back([&store, thread] {
        for (int round = 0; round < 25; ++round)
          thread % 2 == 0 ? store.count.update(plusOne) : store.count.updateSoon(plusOne);
      });
    }
  }
  EXPECT_EQ(store.count.get(), 7 + 8 * 25);
  store.text.set("x");
  EXPECT_EQ(Store(folder).count.get(), 7 + 8 * 25);
}

// Counts calls and lets a test wait for them.
class CallCount {
public:
  void add() {
    const MutexLock lock(mutex_);
    ++calls_;
    changed_.notify_all();
  }
  int calls() const {
    const MutexLock lock(mutex_);
    return calls_;
  }
  bool waitFor(int calls) {
    MutexLock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(60), [&]() REQUIRES(mutex_) { return calls_ >= calls; });
  }

private:
  mutable Mutex mutex_;
  std::condition_variable_any changed_;
  int calls_ GUARDED_BY(mutex_) = 0;
};

TEST_F(LinuxUserDefaultsTest, ALateUpdateReachesTheDiskWhileItsStoreLives) {
  const Store reader(folder);
  CallCount counts;
  const DefaultsObservation observation = reader.count.observe([&] { counts.add(); });
  const Store writer(folder);
  writer.count.updateSoon(plusOne);
  writer.count.updateSoon(plusOne);
  EXPECT_TRUE(counts.waitFor(1));
  EXPECT_EQ(reader.count.get(), 9);
}

TEST_F(LinuxUserDefaultsTest, TellsObserversOfOwnChangesBeforeTheUpdateReturns) {
  const Store store(folder);
  CallCount counts;
  CallCount texts;
  DefaultsObservation observation = store.count.observe([&] { counts.add(); });
  const DefaultsObservation other = store.text.observe([&] { texts.add(); });
  store.count.set(8);
  EXPECT_EQ(counts.calls(), 1);
  store.count.updateSoon(plusOne);
  EXPECT_EQ(counts.calls(), 2);
  store.count.set(9); // no change
  observation.reset();
  store.count.set(10);
  EXPECT_EQ(counts.calls(), 2);
  EXPECT_EQ(texts.calls(), 0);
}

TEST_F(LinuxUserDefaultsTest, TellsObserversOfChangesByOthers) {
  const Store store(folder);
  const Store other(folder);
  CallCount calls;
  DefaultsObservation observation;
  observation = store.count.observe([&] {
    calls.add();
    if (store.count.get() == 2)
      observation.reset(); // from inside
  });
  other.count.set(1);
  ASSERT_TRUE(calls.waitFor(1));
  other.count.set(2);
  ASSERT_TRUE(calls.waitFor(2));
  CallCount texts;
  const DefaultsObservation last = store.text.observe([&] { texts.add(); });
  other.count.set(3);
  other.text.set("seen");
  ASSERT_TRUE(texts.waitFor(1)); // so the store has taken notice of what came before
  EXPECT_EQ(calls.calls(), 2);
}

} // namespace
} // namespace tabwright::platform
