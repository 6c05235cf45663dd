#include "platform/StringCatalogue.h"
#include "support/Environment.h"
#include "support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace tabwright::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr StringCatalogue::Source sources[]{
    {"de", "Localizable", R"({"greeting": "Hallo"})"},
    {"en", "Localizable", R"({"greeting": "Hello", "leave": "Bye"})"},
    {"en", "Broken", "{"},
    {"en", "Mixed", R"({"number": 1, "text": "x"})"},
};

TEST(StringCatalogue, FallsBackFromTheLanguageToEnglishToTheKey) {
  const StringCatalogue catalogue(sources, std::vector<std::string>{"de_AT", "de"});
  EXPECT_EQ(catalogue.localized("greeting"), "Hallo");
  EXPECT_EQ(catalogue.localized("leave"), "Bye");
  EXPECT_EQ(catalogue.localized("The app failed"), "The app failed");
  EXPECT_EQ(catalogue.localized("greeting", "Other"), "greeting");
  EXPECT_EQ(StringCatalogue(sources, {}).localized("greeting"), "Hello");
}

TEST(StringCatalogue, TakesABrokenTableAsEmpty) {
  const testsupport::LogCapture log;
  const StringCatalogue catalogue(sources, {});
  EXPECT_EQ(catalogue.localized("a", "Broken"), "a");
  EXPECT_EQ(catalogue.localized("b", "Broken"), "b");
  EXPECT_EQ(catalogue.localized("number", "Mixed"), "number");
  EXPECT_EQ(catalogue.localized("text", "Mixed"), "x");
  EXPECT_EQ(log.linesOf("error StringCatalogue: ").size(), 2u);
}

TEST(StringCatalogue, FillsFormats) {
  EXPECT_EQ(localizedFormat("%@ and %@, 5%%", {"a%@", "b"}), "a%@ and b, 5%");
  EXPECT_EQ(localizedFormat("%2$@ %1$@ %@", {"a", "b"}), "b a a");
  EXPECT_EQ(localizedFormat("%@ %@ %d %", {"a"}), "a %@ %d %");
}

TEST(LanguagesOfEnvironment, GoFromTheRegionToTheLanguage) {
  using Variable = std::optional<std::string>;
  const auto languages = [](Variable all, Variable messages, Variable lang) {
    const testsupport::Environment environment({{"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}});
    return languagesOfEnvironment();
  };
  EXPECT_THAT(languages({}, {}, {}), IsEmpty());
  EXPECT_THAT(languages({}, {}, "de_AT.UTF-8@euro"), ElementsAre("de_AT", "de"));
  EXPECT_THAT(languages("", "fr", "de_AT.UTF-8"), ElementsAre("fr"));
  EXPECT_THAT(languages("C.UTF-8", "fr", "de"), IsEmpty());
}

} // namespace
} // namespace tabwright::platform
