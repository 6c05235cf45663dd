// Documents that are derived from the declarations.
#include "support/CommandRun.h"
#include "support/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright {
namespace {

using ::testing::HasSubstr;
using testsupport::CommandOutcome;
using testsupport::runTabwright;

TEST(Reference, TheOneInDocsIsCurrent) {
  const CommandOutcome current =
      runTabwright({"actions", "--markdown"}, {}, {{"LC_ALL", "C.UTF-8"}, {"PATH", "/nowhere"}, {"DISPLAY", ""}});
  ASSERT_EQ(current.exitCode, 0) << current.errors;
  EXPECT_EQ(testsupport::sourceText("docs/actions.md"), current.output)
      << "run “./dev docs” and commit docs/actions.md";
}

TEST(Reference, SpeaksTheLanguageOfTheEnvironment) {
  const auto german = [](const std::map<std::string, std::string>& environment) {
    return runTabwright({"actions", "CloseTab"}, {}, environment).output;
  };
  EXPECT_THAT(german({{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "de_AT.UTF-8"}}), HasSubstr("Tab schließen"));
  EXPECT_THAT(german({{"LC_ALL", ""}, {"LC_MESSAGES", "de_DE"}, {"LANG", "fr_FR"}}), HasSubstr("Tab schließen"));
  EXPECT_THAT(german({{"LC_ALL", "fr_FR.UTF-8"}}), HasSubstr("Close tab"));

  const CommandOutcome missing =
      runTabwright({"run", "OpenInTab", "--targetContext", "chromium"}, {}, {{"LC_ALL", "de"}});
  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_THAT(missing.errors, HasSubstr("URL?"));
}

} // namespace
} // namespace tabwright
