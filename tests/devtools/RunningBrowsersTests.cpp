#include "platform/linux/BrowserExecutable.h"
#include "platform/linux/ProcessExit.h"
#include "platform/linux/RunningBrowsers.h"
#include "support/Environment.h"
#include "support/ProcessTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tabwright::platform {

using testing::ElementsAre;
namespace fs = std::filesystem;

class RunningBrowsersTest : public testing::Test {
protected:
  std::vector<RunningBrowser> find(const char* name = "chromium") const {
    return RunningBrowsers(tree_.root()).find(*findBrowser(name));
  }
  std::vector<pid_t> processes(const char* name = "chromium") const {
    std::vector<pid_t> numbers;
    for (const RunningBrowser& browser : find(name))
      numbers.push_back(browser.process);
    return numbers;
  }
  void add(pid_t process, const std::vector<std::string>& arguments, unsigned long start = 100,
           const std::vector<std::string>& environment = {}) {
    tree_.addProcess(process, "/usr/lib/chromium/chromium", arguments, start, environment);
  }

  support::ProcessTree tree_;
};

TEST_F(RunningBrowsersTest, CountsMainProcessesOnly) {
  add(10, {"/usr/lib/chromium/chromium", "--user-data-dir=/p"});
  add(11, {"/usr/lib/chromium/chromium", "--type=renderer"});
  add(12, {"/usr/lib/chromium/chromium --type=zygote --user-data-dir=/p"}); // rewritten into one text
  add(13, {});                                                              // ending: no command line left
  tree_.addProcess(14, "/usr/lib/chromium/chrome_crashpad_handler", {"x"}, 100);
  tree_.addProcess(15, "/opt/google/chrome/chrome", {"chrome", "https://example.com/?a= --type=b"}, 100);
  tree_.addProcess(17, "/usr/bin/dash", {"/bin/sh", "/usr/bin/chromium"}, 100); // a script that starts it
  fs::create_directories(tree_.root() / "16");                                  // vanished in between
  fs::create_directories(tree_.root() / "self");
  EXPECT_THAT(processes(), ElementsAre(10));
  EXPECT_THAT(processes("brave"), ElementsAre());
  EXPECT_THAT(processes("safari"), ElementsAre());
}

TEST_F(RunningBrowsersTest, TellsBrowsersOfOneProgramNameApart) {
  tree_.addProcess(10, "/opt/google/chrome/chrome (deleted)", {"chrome"}, 6);
  tree_.addProcess(11, "/app/chromium/chrome", {"chrome"}, 5);
  tree_.addProcess(12, "/snap/chromium/2900/usr/lib/chromium-browser/chrome", {"chrome"}, 4);
  tree_.addProcess(13, "/home/u/chrome-linux/chrome", {"chrome"}, 3);
  tree_.addProcess(14, "/app/extra/msedge", {"msedge"}, 2);
  tree_.addProcess(15, "/usr/bin/mychromium", {"mychromium"}, 1);
  EXPECT_THAT(processes("chrome"), ElementsAre(10));
  EXPECT_THAT(processes("chromium"), ElementsAre(11, 12, 13));
  std::vector<std::string_view> all;
  for (const RunningBrowser& browser : RunningBrowsers(tree_.root()).findAll())
    all.push_back(browser.facts->shortName);
  EXPECT_THAT(all, ElementsAre("chrome", "chromium", "chromium", "chromium", "edge"));
  EXPECT_EQ(RunningBrowsers(tree_.root()).programOf(10), "/opt/google/chrome/chrome");
  EXPECT_EQ(RunningBrowsers(tree_.root()).programOf(99), "");
}

TEST_F(RunningBrowsersTest, ASandboxedOneLocksItsProfileUnderItsInnerNumber) {
  const fs::path home = tree_.root() / "home", profile = home / ".var/app/org.chromium.Chromium/config/chromium";
  fs::create_directories(home / ".config/chromium");
  fs::create_directories(profile);
  fs::create_symlink("host-2", profile / "SingletonLock");
  tree_.addProcess(5000, "/app/chromium/chrome", {"chrome"}, 1, {"HOME=" + home.string()});
  EXPECT_EQ(find().at(0).innerProcess, 5000);
  EXPECT_EQ(find().at(0).profileDirectory, home / ".config/chromium");
  std::ofstream(tree_.root() / "5000/status") << "Name:\tchrome\nNSpid:\t5000\t2\nNSsid:\t4\t0\n";
  EXPECT_EQ(find().at(0).innerProcess, 2);
  EXPECT_EQ(find().at(0).profileDirectory, profile);
}

TEST_F(RunningBrowsersTest, TheLastStartedComesFirstEvenAfterAnUpgrade) {
  add(30, {"chromium"}, 500);
  tree_.addProcess(20, "/usr/lib/chromium/chromium (deleted)", {"chromium"}, 700);
  add(40, {"chromium"}, 600);
  EXPECT_THAT(processes(), ElementsAre(20, 40, 30));
  EXPECT_EQ(find().at(0).startTime, 700U);
}

TEST_F(RunningBrowsersTest, TheProfileIsTheOneOfTheCommandLine) {
  const auto profile = [&](const std::vector<std::string>& arguments) {
    add(10, arguments);
    const fs::path directory = find().at(0).profileDirectory;
    fs::remove_all(tree_.root() / "10");
    return directory;
  };
  EXPECT_EQ(profile({"chromium", "--user-data-dir=/a b/c"}), "/a b/c");
  EXPECT_EQ(profile({"chromium", "--user-data-dir", "/d"}), "/d");
  EXPECT_EQ(profile({"chromium", "--user-data-dir=/a", "--user-data-dir=/b"}), "/b");
  EXPECT_EQ(profile({"chromium", "--user-data-dir=relative"}), tree_.root() / "relative");
  EXPECT_NE(profile({"chromium", "--", "--user-data-dir=/e"}), "/e");
  // On a desktop the browser writes its arguments into one text.
  EXPECT_EQ(profile({"/opt/chromium --user-data-dir=/a b/c --no-first-run about:blank"}), "/a b/c");
  const fs::path withBlank = tree_.root() / "my profile";
  fs::create_directories(withBlank);
  EXPECT_EQ(profile({"/opt/chromium --user-data-dir=" + withBlank.string() + " about:blank"}), withBlank);
}

TEST_F(RunningBrowsersTest, TheDefaultProfileIsBelowTheProcessesOwnHome) {
  const fs::path home = tree_.root() / "home";
  const std::vector<std::string> environment{"PATH=/bin", "HOME=" + home.string()};
  add(10, {"chromium"}, 100, environment);
  EXPECT_EQ(find().at(0).profileDirectory, home / ".config/chromium") << "none exists yet";
  fs::create_directories(home / "snap/chromium/common/chromium");
  EXPECT_EQ(find().at(0).profileDirectory, home / "snap/chromium/common/chromium") << "the one that exists";
  fs::create_directories(home / ".config/chromium");
  EXPECT_EQ(find().at(0).profileDirectory, home / ".config/chromium");
  fs::create_symlink("host-10", home / "snap/chromium/common/chromium/SingletonLock");
  fs::create_symlink("host-110", home / ".config/chromium/SingletonLock");
  EXPECT_EQ(find().at(0).profileDirectory, home / "snap/chromium/common/chromium") << "the one that it has locked";

  fs::remove_all(tree_.root() / "10");
  fs::create_directories(tree_.root() / "config/chromium");
  add(11, {"chromium"}, 100, {"HOME=" + home.string(), "XDG_CONFIG_HOME=" + (tree_.root() / "config").string()});
  EXPECT_EQ(find().at(0).profileDirectory, tree_.root() / "config/chromium");

  // A browser that has written over its environment has ours, as far as anybody can tell.
  fs::remove_all(tree_.root() / "11");
  const testsupport::Environment ours(
      {{"HOME", (tree_.root() / "none").string()}, {"XDG_CONFIG_HOME", (tree_.root() / "config").string()}});
  add(12, {"chromium"}, 100, {});
  EXPECT_EQ(find().at(0).profileDirectory, tree_.root() / "config/chromium");
}

TEST_F(RunningBrowsersTest, TellsHeadlessOnes) {
  add(10, {"chromium", "--headless=new"}, 3);
  add(11, {"chromium", "--headless"}, 2);
  add(12, {"chromium", "--headless-not"}, 1);
  const std::vector<RunningBrowser> browsers = find();
  EXPECT_TRUE(browsers.at(0).isHeadless);
  EXPECT_TRUE(browsers.at(1).isHeadless);
  EXPECT_FALSE(browsers.at(2).isHeadless);
}

TEST(FindExecutable, TakesTheFirstThatCanBeRun) {
  const support::ProcessTree directory;
  const fs::path one = directory.root() / "one", two = directory.root() / "two";
  fs::create_directories(one / "chromium"); // a directory is no program
  fs::create_directories(two);
  const std::string path = ":relative:" + one.string() + ":" + two.string();
  const BrowserFacts& facts = *findBrowser("chromium");
  EXPECT_EQ(findExecutable(facts, path), std::nullopt);

  std::ofstream(two / "chromium-browser") << "#!/bin/sh\n";
  EXPECT_EQ(findExecutable(facts, path), std::nullopt) << "not executable";
  fs::permissions(two / "chromium-browser", fs::perms::owner_all);
  EXPECT_EQ(findExecutable(facts, path), two / "chromium-browser");
  EXPECT_EQ(findExecutable(*findBrowser("safari"), path), std::nullopt);
  EXPECT_EQ(findExecutable(facts, ""), std::nullopt);
}

TEST(WaitForExit, EndsByTheProcessTheDeadlineOrAStop) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::pause();
    ::_exit(0);
  }
  EXPECT_EQ(waitForExit(child, {std::chrono::steady_clock::now(), {}}), ProcessExit::timedOut);
  std::stop_source source;
  {
    const std::jthread stopper([&] { source.request_stop(); });
    EXPECT_EQ(waitForExit(child, {std::chrono::steady_clock::time_point::max(), source.get_token()}),
              ProcessExit::stopped);
  }
  ::kill(child, SIGKILL);
  EXPECT_EQ(waitForExit(child, {}), ProcessExit::ended) << "though its parent has not taken note";
  ::waitpid(child, nullptr, 0);
  EXPECT_EQ(waitForExit(child, {}), ProcessExit::ended) << "though there is none";
}

} // namespace tabwright::platform
