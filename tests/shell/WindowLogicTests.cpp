#include "shell/BundledResource.h"
#include "shell/EnvironmentSummary.h"
#include "shell/LinkSections.h"
#include "shell/Links.h"
#include "shell/PageLinks.h"
#include "shell/UsageLine.h"
#include "shell/WindowText.h"
#include "support/Environment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::shell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr Endpoints endpoints{.website = "https://tabwright.test",
                              .documentation = "https://docs.tabwright.test",
                              .forum = "https://forum.tabwright.test",
                              .supportMail = "help@tabwright.test",
                              .makersProfile = "https://social.test/@maker"};

TEST(Links, CarryTheirReference) {
  EXPECT_EQ(addressWithRef("https://a.test/x", ""), "https://a.test/x");
  EXPECT_EQ(addressWithRef("https://a.test/x", "r"), "https://a.test/x?ref=r");
  EXPECT_EQ(addressWithRef("https://a.test/x?y=1", "r"), "https://a.test/x?y=1&ref=r");
  EXPECT_EQ(addressWithRef("shortcuts://", ""), "shortcuts://");
  EXPECT_EQ(refLinkTarget("https://a.test/x"), "https://a.test/x?ref=tw-macos");
  for (const char* notAnAddress : {"", "a b", "https://a b/", "/path", "https://a.test/\n"})
    EXPECT_EQ(addressWithRef(notAnAddress, ""), std::nullopt) << notAnAddress;
}

TEST(Links, FeedbackIsAMailWhoseBodyTellsTheSurroundings) {
  EXPECT_EQ(
      feedbackAddress(endpoints, "Tabwright & co"),
      "mailto:help@tabwright.test?subject=Tabwright%20feedback&body=%0A%0A%0A------%0ATabwright%20%26%20co"
      "%0A%0A%E2%86%91%E2%86%91%E2%86%91%20Please%20leave%20this%20part%20in%2C%20thanks%21%0A------&ref=tw-macos");
  EXPECT_EQ(feedbackAddress({}, "x"), std::nullopt);
}

TEST(Links, OfPlacesThatTheBuildDoesNotNameAreLeftOut) {
  const auto addresses = [](const std::vector<ExternalLink>& links) {
    std::vector<std::string> all;
    for (const ExternalLink& link : links)
      all.push_back(link.url);
    return all;
  };
  EXPECT_THAT(addresses(supportLinks(endpoints)),
              ElementsAre("https://docs.tabwright.test", "https://tabwright.test/tabwright/forum",
                          "https://docs.tabwright.test/tabwright/faqs"));
  EXPECT_THAT(addresses(aboutLinks(endpoints).first),
              ElementsAre("https://tabwright.test/tabwright/changes", "https://tabwright.test/thanks",
                          "https://tabwright.test/privacy"));
  EXPECT_THAT(addresses(aboutLinks(endpoints).second),
              ElementsAre("https://social.test/@maker", "https://tabwright.test/tabwright"));
  EXPECT_THAT(supportLinks({}), IsEmpty());
  EXPECT_THAT(aboutLinks({}).second, IsEmpty());
}

TEST(EnvironmentSummary, EndsWithTheBrowsersOrAComma) {
  EXPECT_THAT(environmentSummary("Linux 6.1.0", "C 131.0"),
              MatchesRegex("Tabwright [0-9.]+ \\([0-9]+\\)\nLinux 6.1.0, C 131.0"));
  EXPECT_THAT(environmentSummary("Linux 6.1.0", ""), testing::EndsWith("Linux 6.1.0,"));
  EXPECT_THAT(operatingSystem(), MatchesRegex("Linux [0-9.]+"));
}

TEST(UsageLine, TellsTheDaysFromAFortnightOn) {
  EXPECT_EQ(usageLine(3, 0), "You've called the actions 0 times.");
  EXPECT_EQ(usageLine(13, 1), "You've called the actions once.");
  EXPECT_EQ(usageLine(14, 1), "In the last 14 days, you've called the actions once.");
  EXPECT_EQ(usageLine(14, 2), "In the last 14 days, you've called the actions 2 times.");
}

TEST(UsageLine, CountsWholeDaysOfTheCalendar) {
  constexpr double day = 86400;
  EXPECT_EQ(wholeDays(1000, 1000 + 14 * day - 1), 13);
  EXPECT_EQ(wholeDays(1000, 1000 + 14 * day), 14);
  EXPECT_EQ(wholeDays(5 * day, 0), 0);
}

struct Bundle {
  static ResourceBundle of(ResourceBundle::Content content) {
    return {.read = [content](std::string_view) { return content; }};
  }
};

TEST(BundledResource, IsDecoded) {
  const auto sections = decodeResource<std::vector<ExternalLinkSection>>("ActionsLibraryLinks.json");
  ASSERT_FALSE(sections.empty());
  // Labels are keys of the windows' texts, so a page in German has German titles.
  const auto isText = [](const std::string& key) { return windowText(key) != key; };
  for (const ExternalLinkSection& section : sections) {
    EXPECT_TRUE(isText(section.label)) << section.label;
    for (const ExternalLink& link : section.links)
      EXPECT_TRUE(isText(link.label)) << link.label;
    for (const ExternalLink& link : section.links)
      EXPECT_EQ(ResourceBundle::main().read(link.url).lack, ResourceBundle::Lack::none) << link.url;
  }
  EXPECT_EQ(ResourceBundle::main().read("nowhere.md").lack, ResourceBundle::Lack::file);
}

TEST(BundledResourceDeathTest, StopsTheProgramWhereThePackageIsDamaged) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  using Sections = std::vector<ExternalLinkSection>;
  const auto decode = [](const ResourceBundle& bundle) {
    static_cast<void>(decodeResource<Sections>("a.json", bundle));
  };
  EXPECT_DEATH(decode(Bundle::of({.lack = ResourceBundle::Lack::file})), "Failed to locate a.json in bundle\\.");
  EXPECT_DEATH(decode(Bundle::of({.lack = ResourceBundle::Lack::data})), "Failed to load a.json from bundle\\.");
  for (const char* damaged : {"", "[", "{}", R"([{"label": "x"}])", R"([{"label": "x", "links": [{"label": 1}]}])"})
    EXPECT_DEATH(decode(Bundle::of({.text = damaged})), "Failed to decode a.json from bundle\\.") << damaged;
}

} // namespace
} // namespace tabwright::shell
