// The schedule of checks and what comes back to the main actor, on a clock that the tests move.
#include "UpdateFixture.h"
#include "support/SteppedClock.h"
#include "updates/Updater.h"

#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <thread>

namespace tabwright::updates {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = UpdateOutcome::Kind;

class UpdaterTest : public UpdateFixture {
protected:
  void make() {
    const auto note = [this](const char* event) {
      return [this, event] {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        events.emplace_back(event);
      };
    };
    updater.emplace(Updater::Surroundings{
        .mainActor = mainActor.get_executor(),
        .clock = clock,
        .facts =
            [this] {
              ++asked;
              return currentFacts;
            },
        .isWindowOpen = [this] { return isWindowOpen; },
        .lastCheckFile = scratch / "state/tabwright/last-update-check",
        .didFinishLoading = note("loaded"),
        .didFind = note("found"),
        .didNotFind = note("not found"),
        .didFinishCycle = note("end"),
        .present =
            [this](const UpdateOutcome& outcome) {
              outcomes.push_back(outcome);
              events.emplace_back("present");
            },
    });
  }

  /// Lets the main actor run until so many events have come.
  void runUntil(std::size_t count) {
    mainActor.restart();
    while (events.size() < count && mainActor.run_one_for(60s) != 0) {
    }
    ASSERT_GE(events.size(), count);
    runPending();
  }
  void runPending() {
    mainActor.restart();
    while (mainActor.poll() != 0)
      mainActor.restart();
  }
  void advance(std::chrono::nanoseconds step) {
    clock.advance(step);
    runPending();
  }
  /// Lets time pass in which no look is begun.
  void idle(std::chrono::nanoseconds step) {
    const int before = asked;
    advance(step);
    EXPECT_EQ(asked, before);
    EXPECT_THAT(events, IsEmpty());
  }
  std::vector<std::string> takeEvents() { return std::exchange(events, {}); }

  const std::thread::id mainThread = std::this_thread::get_id();
  UpdateFacts currentFacts = facts();
  int asked = 0; // for its facts, as at the start of each cycle
  bool isWindowOpen = true;
  std::vector<std::string> events;
  std::vector<UpdateOutcome> outcomes;
  testsupport::SteppedClock clock;
  boost::asio::io_context mainActor;
  std::optional<Updater> updater;
};

TEST_F(UpdaterTest, LooksOnceADayByItselfOnceItWasStarted) {
  serveFeed("");
  make();
  idle(48h);
  updater->start();
  updater->start();
  runUntil(3);
  EXPECT_THAT(takeEvents(), ElementsAre("loaded", "not found", "end"));
  idle(1h);
  idle(22h + 59min);
  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  advance(1min);
  runUntil(3);
  EXPECT_THAT(takeEvents(), ElementsAre("loaded", "found", "end"));
  EXPECT_THAT(outcomes, IsEmpty()); // which nobody has asked for

  // The next process looks when the day is over.
  make();
  updater->start();
  idle(23h + 59min);
  advance(1min);
  runUntil(3);
}

TEST_F(UpdaterTest, LooksByItselfOnlyWhileAWindowIsOpenAndAgainAfterAFailure) {
  serveFeed("");
  isWindowOpen = false;
  make();
  updater->start();
  runPending();
  idle(30h);
  isWindowOpen = true;
  server.serve("/appcast.xml", "no feed");
  advance(1h);
  runUntil(1);
  EXPECT_THAT(takeEvents(), ElementsAre("end"));
  serveFeed("");
  idle(59min);
  advance(1min);
  runUntil(3);
  EXPECT_THAT(takeEvents(), ElementsAre("loaded", "not found", "end"));
}

TEST_F(UpdaterTest, PresentsWhatTheUserAskedFor) {
  make();
  serveFeed("");
  updater->check();
  updater->check(); // one cycle
  runUntil(4);
  EXPECT_THAT(takeEvents(), ElementsAre("loaded", "not found", "end", "present"));
  EXPECT_EQ(outcomes.back().kind, Kind::upToDate);
  EXPECT_EQ(outcomes.back().headline, "Tabwright 0.1.0 (1) is up to date.");

  const std::string archive = tarGz(programEntries("0.2.0"));
  server.serve("/archive.tar.gz", archive);
  serveFeed("<item><description>&lt;b&gt;News&lt;/b&gt;</description><sparkle:releaseNotesLink>https://a.example"
            "</sparkle:releaseNotesLink>" +
            item("0.2.0.1", archive.size(), key.sign(archive)).substr(6));
  updater->check();
  runUntil(4);
  EXPECT_THAT(takeEvents(), ElementsAre("loaded", "found", "end", "present"));
  const UpdateOutcome& found = outcomes.back();
  EXPECT_EQ(found.kind, Kind::available);
  EXPECT_EQ(found.headline, "Tabwright 0.2.0.1 is available. You have 0.1.0 (1).");
  EXPECT_EQ(found.advice, "“tabwright update --install” puts it in place.");
  EXPECT_EQ(found.notes, "<b>News</b>");
  EXPECT_EQ(found.notesLink, "https://a.example");
  EXPECT_TRUE(found.canBeInstalled);

  updater->install();
  runUntil(2);
  EXPECT_THAT(takeEvents(), ElementsAre("end", "present"));
  EXPECT_EQ(outcomes.back().kind, Kind::installed);
  EXPECT_EQ(tree(copy()).at("bin/tabwright"), "client 0.2.0");

  server.serve("/appcast.xml", "no feed");
  updater->check();
  runUntil(2);
  EXPECT_THAT(takeEvents(), ElementsAre("end", "present"));
  EXPECT_EQ(outcomes.back().kind, Kind::failed);
  EXPECT_THAT(outcomes.back().headline, HasSubstr("line 1, column 1"));
}

TEST_F(UpdaterTest, SaysWhoElseUpdatesThisCopy) {
  writeFile(scratch / "programs/dpkg", "#!/bin/sh\n", 0755);
  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  make();
  updater->check();
  runUntil(4);
  EXPECT_EQ(outcomes.back().advice,
            "This copy came from a package: “apt install --only-upgrade tabwright” updates it.");
  EXPECT_FALSE(outcomes.back().canBeInstalled);

  currentFacts.feed.clear();
  takeEvents();
  updater->start(); // does nothing: there is no feed
  updater->check();
  runUntil(2);
  advance(100h);
  EXPECT_THAT(takeEvents(), ElementsAre("end", "present"));
  EXPECT_EQ(outcomes.back().kind, Kind::noFeed);
  EXPECT_EQ(outcomes.back().headline, "This build doesn’t look for updates.");
  EXPECT_EQ(outcomes.back().advice,
            "This copy came from a package: “apt install --only-upgrade tabwright” updates it.");
}

TEST_F(UpdaterTest, IsSilentOnceItIsGone) {
  server.neverAnswer("/appcast.xml");
  make();
  updater->start();
  runPending(); // the look is under way, on its thread
  updater->check();
  updater.reset();
  mainActor.restart();
  mainActor.run_for(60s); // until the thread has come back, and no timer is left
  EXPECT_THAT(events, IsEmpty());
  EXPECT_TRUE(mainActor.stopped());
  EXPECT_EQ(clock.sleepers(), 0u);
}

} // namespace
} // namespace tabwright::updates
