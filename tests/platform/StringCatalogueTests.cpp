#include "platform/StringCatalogue.h"
#include "support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

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

class LanguagesOfEnvironment : public testing::Test {
protected:
  LanguagesOfEnvironment() {
    for (const char* name : names)
      former.emplace_back(std::getenv(name) ? std::optional<std::string>(std::getenv(name)) : std::nullopt);
    set(nullptr, nullptr, nullptr);
  }
  ~LanguagesOfEnvironment() override {
    for (std::size_t index = 0; index < former.size(); ++index)
      set(names[index], former[index] ? former[index]->c_str() : nullptr);
  }
  static void set(const char* name, const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }
  static void set(const char* all, const char* messages, const char* lang) {
    set("LC_ALL", all);
    set("LC_MESSAGES", messages);
    set("LANG", lang);
  }

  static constexpr const char* names[]{"LC_ALL", "LC_MESSAGES", "LANG"};
  std::vector<std::optional<std::string>> former;
};

TEST_F(LanguagesOfEnvironment, GoFromTheRegionToTheLanguage) {
  EXPECT_THAT(languagesOfEnvironment(), IsEmpty());
  set(nullptr, nullptr, "de_AT.UTF-8@euro");
  EXPECT_THAT(languagesOfEnvironment(), ElementsAre("de_AT", "de"));
  set("", "fr", "de_AT.UTF-8");
  EXPECT_THAT(languagesOfEnvironment(), ElementsAre("fr"));
  set("C.UTF-8", "fr", "de");
  EXPECT_THAT(languagesOfEnvironment(), IsEmpty());
}

} // namespace
} // namespace tabwright::platform
