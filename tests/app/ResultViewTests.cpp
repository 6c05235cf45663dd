// What a person at a terminal sees of a result.
#include "app/ResultView.h"
#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "platform/TerminalCells.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tabwright::app {
namespace {

using browserdata::BrowserTabEntity;
using browserdata::BrowserWindowEntity;

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

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

TEST(ResultView, AListOfTabsIsATableWithWholeReferences) {
  const std::vector<BrowserTabEntity> tabs{tab("News", "https://news.test/", "8"),
                                           tab("日本語", "about:blank", "12", true)};
  EXPECT_EQ(resultView(resultOf(tabs), 100), "Title   URL                 Private  Reference\n"
                                             "News    https://news.test/           org.chromium.chromium:8\n"
                                             "日本語  about:blank         yes      org.chromium.chromium:12\n");
}

TEST(ResultView, TablesFitTheWidthByShorteningLongTextsOnly) {
  const std::vector<BrowserTabEntity> tabs{
      tab(std::string(200, 't'), "https://example.test/" + std::string(300, 'u'), "8"), tab("short", "s", "9")};
  for (const std::size_t width : {60U, 80U, 120U}) {
    const std::vector<std::string> lines = linesOf(resultView(resultOf(tabs), width));
    ASSERT_EQ(lines.size(), 3U);
    for (const std::string& line : lines)
      EXPECT_LE(platform::cellsOf(line), width) << line;
    EXPECT_TRUE(lines[1].ends_with("org.chromium.chromium:8")) << lines[1];
    EXPECT_NE(lines[1].find("…"), std::string::npos);
    EXPECT_NE(lines[2].find("short "), std::string::npos);
  }
  // Too narrow for any table: the reference still is whole.
  EXPECT_TRUE(linesOf(resultView(resultOf(tabs), 10))[1].ends_with("org.chromium.chromium:8"));
}

TEST(ResultView, AColumnWithNothingInItIsLeftOut) {
  EXPECT_EQ(resultView(resultOf(std::vector{tab("News", "u", "8")}), 100), "Title  URL  Reference\n"
                                                                           "News   u    org.chromium.chromium:8\n");
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
                                              "Reference   org.chromium.chromium:5\n");
}

TEST(ResultView, PagesCannotSteerTheTerminal) {
  const std::string hostile = "a\x1b]0;x\x07\x1b[2J\r\n\xE2\x80\xAE"
                              "b\xFFz";
  const std::string table = resultView(resultOf(std::vector{tab(hostile, "u", "1")}), 80);
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(linesOf(table).size(), 2U);
  EXPECT_EQ(table.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_EQ(resultView(resultOf(std::string("x\x1b[31my\n\tz")), 80), "x[31my\n\tz\n");
}

TEST(ResultView, SaysSoWhenAListIsEmptyAndNothingForNothing) {
  EXPECT_EQ(resultView(resultOf(std::vector<BrowserTabEntity>{}), 80), "none\n");
  EXPECT_EQ(resultView(resultOf(intents::Nothing{}), 80), "");
  EXPECT_EQ(resultView(resultOf(std::vector<std::string>{"a", ""}), 80), "a\n\n");
  EXPECT_EQ(resultView(resultOf(true), 80), "true\n");
}

} // namespace
} // namespace tabwright::app
