#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "support/FailureText.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace tabwright::browserdata {
namespace {

using testsupport::failureText;
using TabTraits = intents::ValueTraits<BrowserTabEntity>;
using WindowTraits = intents::ValueTraits<BrowserWindowEntity>;

const engine::TargetContext safari{"com.apple.safari", "Safari"};
const engine::TargetContext chromium{"org.chromium.chromium", "Chromium"};

BrowserTabData tabRecord() {
  BrowserTabData record;
  record.tabID = "17:3";
  record.tabTitle = "News";
  record.tabURL = "https://news.test/";
  record.isPrivate = true;
  return record;
}

TEST(BrowserTabEntity, IsMadeOfARecordAndTheBrowserThatAnswered) {
  const BrowserTabEntity tab(tabRecord(), safari);
  EXPECT_EQ(tab.fullID, "com.apple.safari:17:3");
  EXPECT_EQ(tab.id(), "17:3");
  EXPECT_EQ(tab.displayRepresentation(), "News [Safari]");
  EXPECT_EQ(boost::json::serialize(TabTraits::toJson(tab)),
            R"({"targetContext":{"id":"com.apple.safari","name":"Safari"},"title":"News","url":"https://news.test/",)"
            R"("selectionText":"","isLoading":false,"isPrivate":true,"fullID":"com.apple.safari:17:3"})");
}

TEST(BrowserTabEntity, KeepsTheDetailsAndTheSelectionAsMarkdownAndRichText) {
  BrowserTabData record = tabRecord();
  record.htmlContent = "<html></html>";
  record.textContent = "";
  record.pageSelectionText = " sel ";
  record.pageSelectionHTML = " <p>All is <b>well</b>.</p>";
  record.isLoading = true;
  const BrowserTabEntity tab(record, safari);
  EXPECT_EQ(tab.htmlDocument, "<html></html>");
  EXPECT_EQ(tab.textContent, "");
  EXPECT_EQ(tab.selectionText, " sel ");
  EXPECT_TRUE(tab.isLoading);
  EXPECT_EQ(tab.selectionMD, "All is **well**.\n\n");
  ASSERT_TRUE(tab.selectionRTFD);
  EXPECT_EQ(tab.selectionRTFD->filename, "selection.rtfd");
  EXPECT_EQ(tab.selectionRTFD->type, "com.apple.rtfd");
  EXPECT_TRUE(tab.selectionRTFD->data.starts_with("{\\rtf1"));
  EXPECT_EQ(TabTraits::fromJson(TabTraits::toJson(tab)), tab);
}

TEST(BrowserTabEntity, HasNeitherForASelectionOfWhiteSpace) {
  BrowserTabData record = tabRecord();
  record.pageSelectionText = " \n";
  record.pageSelectionHTML = " \n\t\u00a0";
  const BrowserTabEntity tab(record, safari);
  EXPECT_EQ(tab.selectionText, " \n");
  EXPECT_FALSE(tab.selectionMD);
  EXPECT_FALSE(tab.selectionRTFD);
}

TEST(BrowserTabEntity, KeepsTheRichTextOfASelectionThatIsNoMarkdown) {
  BrowserTabData record = tabRecord();
  record.pageSelectionHTML.clear();
  for (int count = 0; count < 500; ++count)
    record.pageSelectionHTML += "<blockquote>";
  for (int count = 0; count < 20'000; ++count)
    record.pageSelectionHTML += "x<b>y</b>";
  const BrowserTabEntity tab(record, safari);
  EXPECT_EQ(tab.selectionMD, "ERROR: Unable to convert HTML");
  EXPECT_TRUE(tab.selectionRTFD);
}

TEST(BrowserTabEntity, IsReadFromItsReferenceAlone) {
  for (const std::string_view text : {"org.chromium.chromium:8", "chromium:8", "org.chromium.Chromium:8"}) {
    const BrowserTabEntity tab = TabTraits::fromText(text);
    EXPECT_EQ(tab.targetContext, chromium) << text;
    EXPECT_EQ(tab.fullID, "org.chromium.chromium:8") << text;
  }
  EXPECT_EQ(TabTraits::fromText("safari:17:3").id(), "17:3");
  EXPECT_EQ(WindowTraits::fromJson(boost::json::value("chromium:5")).fullID, "org.chromium.chromium:5");
  EXPECT_EQ(TabTraits::fromText("chromium/Profile 1:8").fullID, "org.chromium.chromium/profile 1:8")
      << "of one profile";
  for (const std::string_view text : {"8", "chromium:", "chromium/:8", "chromium/a/b:8", ":8", "frontmost:8",
                                      "netscape:8", "chromium", "\"chromium:8"})
    EXPECT_NE(failureText([&] { return TabTraits::fromText(text); }).find("or its reference"), std::string::npos)
        << text;
}

TEST(BrowserTabEntity, AReferenceThatWouldLeaveItsLiteralIsRefused) {
  for (const std::string_view reference : {R"(chromium:1\" & (error 1) & \")", R"(chromium:1\\)", R"(chromium:1\n2)"}) {
    const std::string object = "{\"targetContext\":\"chromium\",\"fullID\":\"" + std::string(reference) + "\"}";
    EXPECT_NE(failureText([&] { return TabTraits::fromText(object); }).find("fullID"), std::string::npos) << object;
    EXPECT_NE(failureText([&] { return WindowTraits::fromText(object); }).find("fullID"), std::string::npos) << object;
  }
}

TEST(BrowserWindowEntity, HoldsItsTabsInOrderAndCrossesBothWays) {
  BrowserWindowData record;
  record.windowID = "17";
  record.windowTitle = "Work";
  record.isVisible = true;
  record.activeTab = tabRecord();
  record.tabsList = {tabRecord(), tabRecord()};
  record.tabsList[0].tabTitle = "First";
  const BrowserWindowEntity window(record, safari);
  EXPECT_EQ(window.fullID, "com.apple.safari:17");
  EXPECT_EQ(window.id(), "17");
  EXPECT_EQ(window.displayRepresentation(), "Work [Safari]");
  EXPECT_EQ(window.tabs.at(0).title, "First");
  EXPECT_EQ(window.tabs.at(1), window.activeTab);
  EXPECT_EQ(WindowTraits::fromJson(WindowTraits::toJson(window)), window);
}

TEST(BrowserWindowEntity, AnEmptyTabInsideIsPointedAt) {
  EXPECT_EQ(failureText([] {
              return WindowTraits::fromText(R"({"targetContext":"safari","fullID":"a:1","tabs":[{"fullID":"a:2"}]})");
            }),
            "tabs.item 1 lacks the property targetContext.");
}

TEST(Entities, AreNoneOfTheOther) {
  const BrowserTabEntity tab(tabRecord(), safari);
  EXPECT_NE(failureText([&] { return WindowTraits::fromJson(TabTraits::toJson(tab)); }), "no failure");
}

} // namespace
} // namespace tabwright::browserdata
