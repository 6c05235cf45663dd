// The sentences that users are told, step by step, by states as they follow each other.
#include "ConnectFixture.h"
#include "connect/ConnectWatch.h"
#include "connect/ConnectionAdvice.h"

#include <gmock/gmock.h>

namespace tabwright::connect {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Watching : public ConnectFixture {
protected:
  [[nodiscard]] std::vector<std::string> kinds() const {
    std::vector<std::string> names;
    for (const Advice& advice : adviceFor(state, parts))
      names.emplace_back(nameOf(advice.kind));
    return names;
  }

  ConnectionState state{.directory = chromium,
                        .files = HelperFiles::present,
                        .browser = std::nullopt,
                        .hasSeenFiles = false,
                        .profiles = {{.profile = {.directory = "Default", .name = "Ann"}, .helper = {}, .relay = {}}},
                        .complaint = {}};
  ConnectWatch watch{parts};
};

TEST_F(Watching, TellsEachStepOnceUntilTheBrowserCanBeDriven) {
  state.browser.emplace();
  EXPECT_THAT(watch.observe({state}), ElementsAre(StartsWith("Close all windows of Chromium and start it again")));
  EXPECT_THAT(watch.observe({state}), IsEmpty());
  EXPECT_EQ(watch.failureAfter(7).kind(), ConnectFault::notSeen);
  EXPECT_THAT(watch.failureAfter(7).errorDescription(), HasSubstr("within 7 seconds"));
  state.browser.reset();
  EXPECT_THAT(watch.observe({state}), ElementsAre(StartsWith("Start Chromium")));

  state.browser.emplace();
  state.hasSeenFiles = true;
  EXPECT_THAT(watch.observe({state}), IsEmpty()); // it is just starting
  scripting::HelperDescription& helper = state.profiles[0].helper.emplace();
  EXPECT_THAT(
      watch.observe({state}),
      ElementsAre("The helper is in the profile “Ann” of Chromium.",
                  StartsWith("In the profile “Ann” of Chromium, open "
                             "chrome://extensions/?id=abcdefghijklmnopabcdefghijklmnop and switch on “Allow User "
                             "Scripts”")));
  EXPECT_FALSE(watch.isConnected());
  EXPECT_EQ(watch.failureAfter(7).kind(), ConnectFault::noScripts);

  helper.mayRunScripts = true;
  EXPECT_THAT(watch.observe({state}),
              ElementsAre("It may run scripts in the pages of the profile “Ann” of Chromium.",
                          HasSubstr("“Allow in Incognito”"), HasSubstr("“Allow access to file URLs”")));
  EXPECT_TRUE(watch.isConnected());
  helper.mayRunScripts = false;
  watch.observe({state});
  EXPECT_FALSE(watch.isConnected());
}

TEST_F(Watching, TakesNoSingleSilenceForABrokenHelper) {
  state.browser.emplace();
  state.complaint = "It is lost.";
  EXPECT_THAT(watch.observe({state}), IsEmpty());
  state.complaint.clear();
  state.profiles[0].helper.emplace();
  watch.observe({state});
  state.profiles[0].helper.reset();
  state.complaint = "It is lost.";
  EXPECT_THAT(watch.observe({state}), IsEmpty());
  EXPECT_THAT(watch.observe({state}), ElementsAre(StartsWith("Tabwright’s helper can’t be spoken to: It is lost.")));
}

TEST_F(Watching, AdvisesByTheState) {
  EXPECT_THAT(kinds(), ElementsAre("start"));
  state.browser.emplace();
  EXPECT_THAT(kinds(), ElementsAre("restart"));
  state.files = HelperFiles::forAllUsers;
  EXPECT_THAT(kinds(), ElementsAre("restart"));
  state.hasSeenFiles = true;
  EXPECT_THAT(kinds(), ElementsAre("look"));
  state.hasSeenFiles = false;
  state.files = HelperFiles::absent;
  EXPECT_THAT(kinds(), ElementsAre("install"));
  state.files = HelperFiles::other;
  EXPECT_THAT(kinds(), ElementsAre("renew"));

  state.files = HelperFiles::present;
  state.profiles[0].profile.isHelperRemoved = true;
  EXPECT_THAT(kinds(), ElementsAre("loadByHand")); // starting anew wouldn't help
  state.profiles.push_back({.profile = {.directory = "Profile 1", .name = "Work"}, .helper = {}, .relay = {}});
  EXPECT_THAT(kinds(), ElementsAre("loadByHand", "restart"));

  scripting::HelperDescription& helper = state.profiles[1].helper.emplace();
  helper.mayRunScripts = helper.seesPrivateWindows = helper.readsFiles = true;
  EXPECT_THAT(kinds(), ElementsAre("loadByHand"));
  // Loaded by hand, it needs no files of ours.
  state.files = HelperFiles::absent;
  state.profiles.erase(state.profiles.begin());
  EXPECT_THAT(kinds(), IsEmpty());
  state.directory.sandbox = Sandbox::snap;
  EXPECT_THAT(kinds(), ElementsAre("sandboxed"));
}

} // namespace
} // namespace tabwright::connect
