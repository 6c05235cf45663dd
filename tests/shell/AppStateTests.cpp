#include "shell/AppState.h"
#include "support/MemoryUserDefaults.h"
#include "support/ModelApplication.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::shell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppStateTest : public testing::Test {
protected:
  RootViewSheet sheetAfter(const std::string& seen) {
    keys.seenWhatsNewWithChecksum.set(seen);
    store.writes.clear();
    return AppState(application, keys).selectedSheet.value();
  }

  testsupport::MemoryUserDefaults store;
  DefaultsKeys keys{store};
  testsupport::ModelApplication application;
};

TEST_F(AppStateTest, AFirstLaunchHasSeenTheNews) {
  EXPECT_EQ(AppState(application, keys).selectedSheet.value(), RootViewSheet::none);
  EXPECT_EQ(keys.seenWhatsNewWithChecksum.get(), "67b4e7f3");
  EXPECT_EQ(sheetAfter(" \n\t\u00a0 "), RootViewSheet::none); // blanks count as nothing
  EXPECT_EQ(keys.seenWhatsNewWithChecksum.get(), "67b4e7f3");
}

TEST_F(AppStateTest, NewsAreShownUntilTheyAreMarkedAsRead) {
  EXPECT_EQ(sheetAfter("67b4e7f3"), RootViewSheet::none);
  EXPECT_EQ(sheetAfter("0d0d0d0d"), RootViewSheet::whatsNew);
  EXPECT_EQ(sheetAfter("67b4e7f3 "), RootViewSheet::whatsNew); // compared as it stands
  EXPECT_THAT(store.writes, IsEmpty());

  AppState state(application, keys);
  EXPECT_EQ(state.selectedSheet.value(), RootViewSheet::whatsNew);
  state.markWhatsNewAsRead();
  EXPECT_EQ(state.selectedSheet.value(), RootViewSheet::none);
  EXPECT_EQ(AppState(application, keys).selectedSheet.value(), RootViewSheet::none);
}

TEST_F(AppStateTest, HiddenIsAskedForOnce) {
  application.hidden = true;
  const AppState state(application, keys);
  application.hidden = false;
  EXPECT_TRUE(state.isAppRunningHidden);
  EXPECT_FALSE(AppState(application, keys).isAppRunningHidden);
  EXPECT_EQ(state.selectedView.value(), RootViewTab::home);
  EXPECT_FALSE(state.isAppUpdateAvailable.value());
}

TEST(Published, TellsBeforeEachWriteUntilTheObservationEnds) {
  Published<int> number(1);
  std::vector<std::string> record;
  const auto note = [&](const int& next) {
    record.push_back(std::to_string(number.value()) + " to " + std::to_string(next));
  };
  PublishedObservation observation = number.observe(note);
  PublishedObservation second = number.observe([&](const int&) { second.reset(); }); // ends itself, in a call
  number.set(2);
  number.set(2);
  observation.reset();
  number.set(3);
  EXPECT_THAT(record, ElementsAre("1 to 2", "2 to 2"));
  EXPECT_EQ(number.value(), 3);
}

} // namespace
} // namespace tabwright::shell
