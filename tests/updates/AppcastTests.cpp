// Reading feeds, comparing versions and choosing what is offered.
#include "support/FailureText.h"
#include "updates/Appcast.h"
#include "updates/Selection.h"
#include "updates/Version.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::updates {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testsupport::failureText;

std::string feedOf(const std::string& channel) {
  return "<?xml version=\"1.0\"?>\n"
         "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">\n" +
         channel + "\n</rss>\n";
}

std::string feedOfItem(const std::string& item) {
  return feedOf("<channel><item>\n" + item + "\n</item></channel>");
}

constexpr const char* enclosure = R"(<enclosure url="https://a.example/a.tar.gz" length="7" type="x/y"/>)";

TEST(Appcast, IsReadWithAllThatAnItemSays) {
  const Appcast appcast = readAppcast(R"(<?xml version="1.0" encoding="UTF-8"?>
<rss version="2.0" xmlns:s="http://www.andymatuschak.org/xml-namespaces/sparkle" xmlns:other="urn:other">
  <channel>
    <title>Tabwright</title>
    <other:item><s:version>99</s:version></other:item>
    <item>
      <title>0.2</title>
      <link> https://a.example/0.2 </link>
      <s:version>0.2.0.5</s:version>
      <other:version>77</other:version>
      <s:shortVersionString>0.2</s:shortVersionString>
      <s:channel>beta</s:channel>
      <s:minimumSystemVersion>2.36</s:minimumSystemVersion>
      <s:releaseNotesLink>https://a.example/notes</s:releaseNotesLink>
      <s:releaseNotesLink xml:lang="de">https://a.example/de</s:releaseNotesLink>
      <description><![CDATA[<b>New</b> &]]> more</description>
      <s:deltas><enclosure url="https://a.example/delta" length="1"/></s:deltas>
      <enclosure url="https://a.example/w.zip" length="3" s:os="windows"/>
      <enclosure url="https://a.example/a.tar.gz" length="123" type="application/gzip" s:edSignature="c2ln" s:os="linux"/>
    </item>
    <item><enclosure url="https://a.example/old.tar.gz" length="1" s:version="0.1" s:shortVersionString="0.1 old"/></item>
    <item><s:version>9</s:version><enclosure url="https://a.example/m.zip" length="3" s:os="windows"/></item>
    <item><s:version>10</s:version></item>
  </channel>
</rss>)");
  ASSERT_EQ(appcast.size(), 4u);
  const AppcastItem& item = appcast.front();
  EXPECT_EQ(item.version, "0.2.0.5");
  EXPECT_EQ(item.shownVersion(), "0.2");
  EXPECT_EQ(item.channel, "beta");
  EXPECT_EQ(item.minimumSystemVersion, "2.36");
  EXPECT_EQ(item.releaseNotesLink, "https://a.example/notes");
  EXPECT_EQ(item.description, "<b>New</b> & more");
  EXPECT_EQ(item.link, "https://a.example/0.2");
  ASSERT_TRUE(item.enclosure);
  EXPECT_EQ(item.enclosure->url, "https://a.example/a.tar.gz");
  EXPECT_EQ(item.enclosure->length, 123u);
  EXPECT_EQ(item.enclosure->type, "application/gzip");
  EXPECT_EQ(item.enclosure->signature, "c2ln");
  EXPECT_EQ(appcast[1].version, "0.1");
  EXPECT_EQ(appcast[1].shownVersion(), "0.1 old");
  EXPECT_TRUE(appcast[2].isForOtherSystems);
  EXPECT_FALSE(appcast[3].enclosure || appcast[3].isForOtherSystems);
}

TEST(Appcast, OfAWrongShapeIsRefusedWithThePlace) {
  const std::string version = "<sparkle:version>2</sparkle:version>";
  struct Row {
    std::string document;
    std::string reason;
  };
  std::string deep;
  for (int depth = 0; depth < 40; ++depth)
    deep += "<a>";
  std::string many = "<channel>";
  for (int count = 0; count < 1001; ++count)
    many += "<item>" + version + "</item>";
  for (const Row& row : std::vector<Row>{
           {"", "line 1, column 1: no element found"},
           {"{\"items\": []}", "line 1, column 1: not well-formed (invalid token)"},
           {"<!DOCTYPE html><html></html>", "a document type declaration is not taken"},
           {"<html></html>", "line 1, column 1: it is no RSS 2.0"},
           {"<rss version=\"0.91\"><channel/></rss>", "it is no RSS 2.0"},
           {"<rss xmlns=\"urn:x\" version=\"2.0\"><channel/></rss>", "it is no RSS 2.0"},
           {feedOf(""), "it has no channel"},
           {feedOf("<channel/><channel/>"), "line 3, column 11: there is a second channel"},
           {feedOf("<channel><item>"), "mismatched tag"},
           {"<rss version=\"2.0\"><channel><item>", "no element found"},
           {feedOfItem(enclosure), "line 5, column 1: the item has no sparkle:version"},
           {feedOfItem(std::string("<v:version xmlns:v=\"urn:v\">2</v:version>") + enclosure),
            "line 5, column 1: the item has no sparkle:version"},
           {feedOfItem("<x:version>2</x:version>"), "line 4, column 1: unbound prefix"},
           {feedOfItem(version + version), "line 4, column 37: sparkle:version stands there twice"},
           {feedOfItem("<sparkle:version>two</sparkle:version>"), "the item’s sparkle:version is no version"},
           {feedOfItem("<sparkle:version>2\x1b[2J</sparkle:version>"), "not well-formed (invalid token)"},
           {feedOfItem(version + "<enclosure length='1'/>"), "line 4, column 37: the enclosure has no url"},
           {feedOfItem(version + "<enclosure url='https://a.example'/>"), "length is no number of bytes"},
           {feedOfItem(version + "<enclosure url='https://a.example' length='-1'/>"), "length is no number of bytes"},
           {feedOfItem(version + "<enclosure url='https://a.example' length='0'/>"), "length is no number of bytes"},
           {feedOfItem(version + "<enclosure url='https://a.example' length='1e3'/>"), "length is no number of bytes"},
           {feedOfItem(version + "<enclosure url='https://a.example' length='99999999999'/>"),
            "the enclosure is longer than 1073741824 bytes"},
           {feedOf("<channel>" + deep), "its elements are nested deeper than 32"},
           {feedOf(many + "</channel>"), "there are more than 1000 items"},
           {std::string(longestAppcast + 1, ' '), "it is longer than 1048576 bytes"},
       }) {
    const std::string text = failureText([&] { return readAppcast(row.document); });
    EXPECT_THAT(text, StartsWith("The list of updates can’t be read: ")) << row.document.substr(0, 300);
    EXPECT_THAT(text, HasSubstr(row.reason)) << row.document.substr(0, 300);
  }
}

TEST(Appcast, TakesNoEntities) {
  const std::string bomb = R"(<!DOCTYPE rss [<!ENTITY a "ha"><!ENTITY b "&a;&a;&a;&a;"><!ENTITY c "&b;&b;&b;&b;">]>)";
  const std::string outside = R"(<!DOCTYPE rss [<!ENTITY x SYSTEM "file:///etc/passwd">]>)";
  for (const std::string& declaration : {bomb, outside, std::string("<!DOCTYPE rss SYSTEM \"file:///dev/zero\">")}) {
    const std::string document = declaration + "<rss version=\"2.0\"><channel><title>&c;&x;</title></channel></rss>";
    EXPECT_THAT(failureText([&] { return readAppcast(document); }),
                HasSubstr("a document type declaration is not taken"));
  }
  EXPECT_THAT(failureText([] { return readAppcast(feedOf("<channel>&x;</channel>")); }), HasSubstr("undefined entity"));
}

TEST(Version, ComesBeforeThoseThatFollow) {
  const std::vector<std::string> ascending{"0",        "0.0.1",
                                           "0.1b1",    "0.1rc1",
                                           "0.1.0",    "0.1.0.1",
                                           "0.1.2",    "0.1.10",
                                           "0.2-dev",  "0.2.0b",
                                           "0.2.0b2",  "0.2",
                                           "0.10",     "1.0a",
                                           "1.0a2",    "1.0b1",
                                           "1.0 b 2",  "1",
                                           "1.1",      "2023.1",
                                           "2023.1.1", "18446744073709551617"};
  for (std::size_t one = 0; one < ascending.size(); ++one) {
    for (std::size_t other = 0; other < ascending.size(); ++other)
      EXPECT_EQ(compareVersions(ascending[one], ascending[other]), one <=> other)
          << ascending[one] << " and " << ascending[other];
  }
  for (const auto& [one, other] : std::vector<std::pair<const char*, const char*>>{{"1.0", "1"},
                                                                                   {"1.0.0", "1"},
                                                                                   {"01.002", "1.2"},
                                                                                   {"1.2", "1-2"},
                                                                                   {"1.0+x86", "1.0+arm"},
                                                                                   {"1.0-b1", "1.0b1"}})
    EXPECT_EQ(compareVersions(one, other), std::strong_ordering::equal) << one << " and " << other;
}

AppcastItem itemOf(std::string version) {
  AppcastItem item;
  item.version = std::move(version);
  return item;
}

TEST(Selection, TakesTheNewestThatIsForThisBuild) {
  const RunningBuild build{.version = "0.1.0.3",
                           .programVersion = "0.1.0",
                           .shownVersion = "0.1.0 (3)",
                           .channels = {"beta"},
                           .systemVersion = "2.36"};
  AppcastItem otherChannel = itemOf("9");
  otherChannel.channel = "nightly";
  AppcastItem otherSystem = itemOf("8");
  otherSystem.isForOtherSystems = true;
  AppcastItem laterSystem = itemOf("7");
  laterSystem.minimumSystemVersion = "2.37";
  AppcastItem ownChannel = itemOf("0.2");
  ownChannel.channel = "beta";
  ownChannel.minimumSystemVersion = "2.36";
  const Appcast older{itemOf("0.0.9"),   itemOf("0.1.0.3"), itemOf("0.1.0"), itemOf("0.1.0.4b1"),
                      itemOf("0.1.0.2"), otherChannel,      otherSystem,     laterSystem};
  const auto best = [&](std::vector<AppcastItem> more) {
    more.insert(more.begin(), older.begin(), older.end());
    const std::optional<AppcastItem> found = bestUpdate(more, build);
    return found ? found->version : "none";
  };
  EXPECT_FALSE(bestUpdate({}, build));
  EXPECT_EQ(best({}), "0.1.0.4b1"); // a pre-release of what comes next
  EXPECT_EQ(best({itemOf("0.1.0.4")}), "0.1.0.4");
  EXPECT_EQ(best({itemOf("0.1.1"), ownChannel, itemOf("0.1.9")}), "0.2");
  EXPECT_FALSE(bestUpdate({itemOf("0.1.0.3"), itemOf("0.1"), otherChannel}, build));
}

} // namespace
} // namespace tabwright::updates
