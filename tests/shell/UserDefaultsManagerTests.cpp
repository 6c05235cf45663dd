#include "shell/UserDefaultsManager.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/MemoryUserDefaults.h"
#include "targets/SupportedBrowsers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tabwright::shell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::map<std::string, std::string>;

constexpr const char* safari = "com.apple.safari";
constexpr const char* chrome = "com.google.chrome";

class UserDefaultsManagerTest : public testing::Test {
protected:
  // A stored map of these texts, as another version or another program may have left it.
  void storeStates(const Texts& texts) { store.stored["e09e6ffa"] = texts; }
  BrowserState state(const std::string& id) const { return keys.browserStates.get().at(id); }

  testsupport::MemoryUserDefaults store;
  DefaultsKeys keys{store};
  UserDefaultsManager manager{store, keys};
};

TEST_F(UserDefaultsManagerTest, AFreshStoreHasItsDefaults) {
  EXPECT_EQ(keys.actionsCallCount.get(), 0);
  EXPECT_EQ(keys.firstLaunchTimestamp.get(), 0);
  EXPECT_EQ(keys.lastReportedRelease.get(), "");
  EXPECT_FALSE(keys.isAssistiveAccessGranted.get());
  EXPECT_THAT(keys.windowNames.get(), IsEmpty());
  const BrowserStates states = keys.browserStates.get();
  EXPECT_EQ(states.size(), targets::supportedBrowsers().size());
  for (const targets::TargetContext& browser : targets::supportedBrowsers())
    EXPECT_EQ(states.at(browser.id), (BrowserState{AssistiveAccessStatus::unknown, "-"}));
  EXPECT_EQ(manager.browserVersionList(), "");
  EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(UserDefaultsManagerTest, StoresValuesUnderTheirFixedNamesInTheirForms) {
  manager.countCall();
  manager.countCall();
  manager.setBrowserVersion(chrome, "120.0 \"x\"");
  manager.setBrowserStatus(chrome, AssistiveAccessStatus::denied);
  manager.set("com.apple.safari:17", "mail");
  keys.lastReportedRelease.set("0.1.0 (1)");
  keys.isAssistiveAccessGranted.set(true);
  EXPECT_EQ(store.stored.at("c41d07ab"), platform::DefaultsValue(std::int64_t{2}));
  EXPECT_EQ(std::get<Texts>(store.stored.at("e09e6ffa")).at(chrome),
            R"({"assistiveAccess":"denied","version":"120.0 \"x\""})");
  EXPECT_EQ(std::get<Texts>(store.stored.at("e09e6ffa")).at(safari), R"({"assistiveAccess":"unknown","version":"-"})");
  EXPECT_EQ(store.stored.at("97db2995"), platform::DefaultsValue(Texts{{"com.apple.safari:17", "mail"}}));
  EXPECT_EQ(store.stored.at("48ae42df"), platform::DefaultsValue(std::string("0.1.0 (1)")));
  EXPECT_EQ(store.stored.at("645a0a64"), platform::DefaultsValue(true));
}

TEST_F(UserDefaultsManagerTest, ACountThatCanGrowNoMoreStays) {
  keys.actionsCallCount.set(std::numeric_limits<std::int64_t>::max());
  manager.countCall();
  EXPECT_EQ(keys.actionsCallCount.get(), std::numeric_limits<std::int64_t>::max());
}

TEST_F(UserDefaultsManagerTest, EveryStatusSurvivesItsText) {
  for (const auto status :
       {AssistiveAccessStatus::unknown, AssistiveAccessStatus::appNotInstalled, AssistiveAccessStatus::requesting,
        AssistiveAccessStatus::granted, AssistiveAccessStatus::denied})
    EXPECT_EQ(BrowserState::fromJSON(BrowserState{status, "1"}.json()), (BrowserState{status, "1"}));
  for (const char* text :
       {"", "[]", "{}", R"({"assistiveAccess":"granted"})", R"({"version":"1"})",
        R"({"assistiveAccess":"Granted","version":"1"})", R"({"assistiveAccess":"granted","version":1})",
        R"({"assistiveAccess":"granted","version":"1"} x)"})
    EXPECT_EQ(BrowserState::fromJSON(text), std::nullopt) << text;
}

TEST_F(UserDefaultsManagerTest, ABrowserWithoutAnEntryIsIgnored) {
  storeStates({{chrome, R"({"assistiveAccess":"granted","version":"120.0"})"}});
  manager.setBrowserVersion(safari, "17.4");
  manager.setBrowserStatus(safari, AssistiveAccessStatus::denied);
  manager.resetBrowserStates();
  manager.setBrowserVersion("org.example.other", "1");
  EXPECT_EQ(keys.browserStates.get().size(), 1u);
  EXPECT_EQ(manager.browserVersionList(), "GC 120.0");
}

TEST_F(UserDefaultsManagerTest, AResetKeepsTheVersions) {
  manager.setBrowserVersion(chrome, "120.0");
  manager.setBrowserStatus(chrome, AssistiveAccessStatus::granted);
  keys.isAssistiveAccessGranted.set(true);
  manager.resetBrowserStates();
  EXPECT_EQ(state(chrome), (BrowserState{AssistiveAccessStatus::unknown, "120.0"}));
  EXPECT_FALSE(keys.isAssistiveAccessGranted.get());
}

TEST_F(UserDefaultsManagerTest, AccessIsGrantedWhenNoBrowserIsInTheWay) {
  const auto granted = [this] {
    manager.recomputeAssistiveAccessGranted();
    return keys.isAssistiveAccessGranted.get();
  };
  for (const targets::TargetContext& browser : targets::supportedBrowsers())
    manager.setBrowserStatus(browser.id, AssistiveAccessStatus::appNotInstalled);
  EXPECT_TRUE(granted());
  manager.setBrowserStatus(chrome, AssistiveAccessStatus::granted);
  EXPECT_TRUE(granted());
  for (const auto status :
       {AssistiveAccessStatus::denied, AssistiveAccessStatus::requesting, AssistiveAccessStatus::unknown}) {
    manager.setBrowserStatus(safari, status);
    EXPECT_FALSE(granted()) << rawValue(status);
  }
  storeStates({});
  EXPECT_TRUE(granted());
}

TEST_F(UserDefaultsManagerTest, ListsKnownVersionsInTheOrderOfTheBrowsers) {
  manager.setBrowserVersion(safari, "17.4");
  manager.setBrowserVersion(chrome, "120.0");
  manager.setBrowserVersion("com.brave.browser", "1.60");
  manager.setBrowserVersion("org.chromium.chromium", "12-"); // ends like one that isn't known
  EXPECT_EQ(manager.browserVersionList(), "BB 1.60, GC 120.0, S 17.4");
}

TEST_F(UserDefaultsManagerTest, TheVersionThatIsKnownIsNotWrittenAgain) {
  manager.setBrowserVersion(chrome, "120.0");
  manager.setBrowserVersion(chrome, "120.0");
  EXPECT_THAT(store.writes, ElementsAre("e09e6ffa"));
}

TEST_F(UserDefaultsManagerTest, AnUnreadableEntryIsRepairedByTheNextWrite) {
  const testsupport::LogCapture log;
  storeStates({{chrome, "{"}, {safari, R"({"assistiveAccess":"granted","version":"17.4"})"}});
  EXPECT_EQ(state(chrome), BrowserState());
  EXPECT_EQ(state(chrome), BrowserState());
  EXPECT_EQ(log.linesOf("error UserDefaults: The stored state of com.google.chrome can't be read: {").size(), 1u);
  manager.setBrowserVersion(chrome, "120.0");
  EXPECT_EQ(manager.browserVersionList(), "GC 120.0, S 17.4");
  EXPECT_EQ(state(safari).assistiveAccess, AssistiveAccessStatus::granted);
}

TEST_F(UserDefaultsManagerTest, PrunesNamesOfWindowsThatAreGone) {
  manager.set("com.apple.safari:1", "one");
  manager.set("com.apple.safari:2", "two");
  manager.set("com.apple.safari:2", "second");
  store.writes.clear();
  manager.prune({"com.apple.safari:1", "com.apple.safari:2", "com.apple.safari:3"});
  EXPECT_THAT(store.writes, IsEmpty());
  manager.prune({"com.apple.safari:2"});
  EXPECT_EQ(manager.names(), (Texts{{"com.apple.safari:2", "second"}}));
  manager.prune({});
  EXPECT_THAT(manager.names(), IsEmpty());
}

TEST_F(UserDefaultsManagerTest, RecordsTheFirstLaunchOnce) {
  testsupport::ManualClock clock;
  keys.firstLaunchTimestamp.set(-1); // counts as none
  manager.recordFirstLaunch(clock);
  clock.now += 86400;
  manager.recordFirstLaunch(clock);
  EXPECT_EQ(keys.firstLaunchTimestamp.get(), 788918400.25);
}

} // namespace
} // namespace tabwright::shell
