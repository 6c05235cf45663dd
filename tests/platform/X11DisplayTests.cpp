#include "platform/DesktopFault.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11WindowSystem.h"
#include "support/Environment.h"
#include "support/FailureText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::platform {

namespace {

using testing::HasSubstr;
using testsupport::Environment;

std::string refusal() {
  return testsupport::failureText([] { return X11WindowSystem().windows(); });
}

TEST(X11Display, TellsWhichKindOfScreenIsMissing) {
  {
    const Environment none({{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}});
    EXPECT_THAT(refusal(), HasSubstr("no X11 window system here (DISPLAY isn’t set)"));
  }
  {
    const Environment gone({{"DISPLAY", ":9999"}, {"WAYLAND_DISPLAY", "wayland-0"}});
    EXPECT_THAT(refusal(), HasSubstr("(the display :9999 can’t be reached)"));
  }
  {
    const Environment wayland({{"DISPLAY", ""}, {"WAYLAND_DISPLAY", "wayland-0"}});
    EXPECT_THAT(refusal(), HasSubstr("runs on Wayland"));
    EXPECT_THAT(testsupport::failureText([] {
                  X11Keyboard().type("a", {}, {});
                  return 0;
                }),
                HasSubstr("runs on Wayland"));
  }
}

} // namespace

} // namespace tabwright::platform
