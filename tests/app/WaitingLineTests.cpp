#include "client/WaitingLine.h"

#include <gtest/gtest.h>

#include <string>

namespace tabwright::client {
namespace {

using std::chrono::milliseconds;

TEST(WaitingLine, StandsAfterTwoSecondsAndIsTakenAway) {
  WaitingLine::Clock::time_point now;
  std::string terminal;
  {
    WaitingLine line(
        "Click\x1b[1m " + std::string(100, 'x'), [&] { return now; },
        [&](const std::string& text) { terminal += text; }, 50);
    EXPECT_EQ(line.left(), milliseconds(2000));
    now += milliseconds(1999);
    line.showIfDue();
    EXPECT_EQ(terminal, "");
    now += milliseconds(1);
    line.showIfDue();
    line.showIfDue();
    const std::string shown = "Waiting for Click[1m xxxxxxxxxxxx… (Ctrl-C stops)\r";
    EXPECT_EQ(terminal, shown);
    line.erase();
    EXPECT_EQ(terminal, shown + WaitingLine::eraser);

    line.hold(); // while somebody is asked
    now += milliseconds(9000);
    line.showIfDue();
    line.resume();
    now += milliseconds(1999);
    line.showIfDue();
    EXPECT_EQ(terminal, shown + WaitingLine::eraser);
    now += milliseconds(1);
    line.showIfDue();
    terminal.clear();
  }
  EXPECT_EQ(terminal, WaitingLine::eraser);
}

} // namespace
} // namespace tabwright::client
