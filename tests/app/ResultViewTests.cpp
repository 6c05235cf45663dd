// A result as a person at a terminal sees it.
#include "app/ResultView.h"
#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "platform/TerminalCells.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::app {
namespace {

using browserdata::BrowserTabEntity;
using browserdata::BrowserWindowEntity;
using testsupport::linesOf;

BrowserTabEntity tab(std::string title, std::string url, std::string id, bool isPrivate = false) {
  BrowserTabEntity entity;
  entity.targetContext = {"org.chromium.chromium", "Chromium"};
  entity.title = std::move(title);
  entity.url = std::move(url);
  entity.fullID = "org.chromium.chromium:" + id;
  entity.isPrivate = isPrivate;
  return entity;
}

template <class T>
host::ActionResult resultOf(const T& value) {
  return {intents::ValueTraits<T>::toJson(value), intents::ValueTraits<T>::type()};
}

TEST(ResultView, AListOfTabsIsATableWithReferencesThatCanBeGivenBack) {
  const std::vector<BrowserTabEntity> tabs{tab("News", "https://news.test/", "8"),
                                           tab("日本語", "about:blank", "12", true)};
  EXPECT_EQ(resultView(resultOf(tabs), 100), "Title   URL                 Private  Reference\n"
                                             "News    https://news.test/           chromium:8\n"
                                             "日本語  about:blank         yes      chromium:12\n");
  EXPECT_EQ(BrowserTabEntity::fromReference("chromium:12")->fullID, tabs[1].fullID);
}

TEST(ResultView, AListOfTabsTellsWhereTheyAreAndWhichNumberChoosesThem) {
  const std::vector<BrowserTabEntity> tabs{tab("News", "u", "8"), tab("Mail", "u", "9")};
  TableAdditions additions{
      .places = {{tabs[0].fullID, {.window = 1, .isActive = true}}, {tabs[1].fullID, {.window = 2, .isActive = false}}},
      .isNumbered = true};
  EXPECT_EQ(resultView(resultOf(tabs), 100, additions), "   Window  Active  Title  URL  Reference\n"
                                                        "1  1       yes     News   u    chromium:8\n"
                                                        "2  2               Mail   u    chromium:9\n");
}

TEST(ResultView, TablesFitTheWidthByShorteningLongTextsOnly) {
  const std::vector<BrowserTabEntity> tabs{
      tab(std::string(200, 't'), "https://example.test/" + std::string(300, 'u'), "8"), tab("short", "s", "9")};
  for (const std::size_t width : {60U, 80U, 120U}) {
    const std::vector<std::string> lines = linesOf(resultView(resultOf(tabs), width));
    ASSERT_EQ(lines.size(), 3U);
    for (const std::string& line : lines)
      EXPECT_LE(platform::cellsOf(line), width) << line;
    EXPECT_TRUE(lines[1].ends_with(" chromium:8")) << lines[1];
    EXPECT_NE(lines[1].find("…"), std::string::npos);
    EXPECT_NE(lines[2].find("short "), std::string::npos);
  }
  // Too narrow for any table: the reference still is whole.
  EXPECT_TRUE(linesOf(resultView(resultOf(tabs), 10))[1].ends_with(" chromium:8"));
}

TEST(ResultView, AWindowIsALinePerPropertyWithItsTabsCounted) {
  BrowserWindowEntity window;
  window.targetContext = {"org.chromium.chromium", "Chromium"};
  window.windowTitle = "Work";
  window.tabs = {tab("a", "b", "1"), tab("c", "d", "2")};
  window.activeTab = tab("c", "d", "2");
  window.isVisible = true;
  window.fullID = "org.chromium.chromium:5";
  EXPECT_EQ(resultView(resultOf(window), 80), "Browser     Chromium\n"
                                              "Title       Work\n"
                                              "Tabs        2\n"
                                              "Active tab  c [Chromium]\n"
                                              "Visible     yes\n"
                                              "Reference   chromium:5\n");
}

TEST(ResultView, PagesCannotBreakTheTable) {
  const std::string hostile = "a\x1b]0;x\x07\x1b[2J\r\n\xE2\x80\xAE"
                              "b\xFFz";
  const std::string table = resultView(resultOf(std::vector{tab(hostile, "u", "1")}), 80);
  EXPECT_EQ(linesOf(table).size(), 2U);
}

TEST(ResultView, SaysSoWhenAListIsEmptyAndNothingForNothing) {
  EXPECT_EQ(resultView(resultOf(std::vector<BrowserTabEntity>{}), 80), "none\n");
  EXPECT_EQ(resultView(resultOf(intents::Nothing{}), 80), "");
  EXPECT_EQ(resultView(resultOf(std::vector<std::string>{"a", ""}), 80), "a\n\n");
  EXPECT_EQ(resultView(resultOf(true), 80), "true\n");
}

} // namespace
} // namespace tabwright::app
