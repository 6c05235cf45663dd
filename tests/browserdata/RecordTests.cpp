#include "browserdata/BrowserTabData.h"
#include "browserdata/BrowserWindowData.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace tabwright::browserdata {
namespace {

template <class Record>
Record read(std::string_view json) {
  const boost::json::value value = boost::json::parse(json);
  return platform::JSONReader(value).read<Record>();
}

// The place of the mistake in a window; empty when it can be decoded.
std::string mismatchOf(std::string_view json) {
  try {
    static_cast<void>(read<BrowserWindowData>(json));
    return {};
  } catch (const platform::JSONMismatch& mismatch) {
    return mismatch.clause().substr(0, mismatch.clause().find(':'));
  }
}

constexpr std::string_view plainTab = R"({"tabID":"8","tabTitle":"News","tabURL":"https://news.test/"})";

TEST(BrowserTabData, NeedsOnlyIdTitleAndURL) {
  const BrowserTabData expected{.htmlContent = {},
                                .pageSelectionText = "",
                                .pageSelectionHTML = "",
                                .tabID = "8",
                                .tabTitle = "News",
                                .tabURL = "https://news.test/",
                                .textContent = {}};
  for (const std::string_view json :
       {plainTab, // null is as good as missing where there is a default
        std::string_view(R"({"htmlContent":null,"isLoading":null,"isPrivate":null,"pageSelectionText":null,
                             "pageSelectionHTML":null,"tabID":"8","tabTitle":"News","tabURL":"https://news.test/",
                             "textContent":null,"somethingElse":1})")})
    EXPECT_EQ(read<BrowserTabData>(json), expected) << json;
}

TEST(BrowserTabData, IsWrittenWithoutDefaultsInTheOrderOfItsFields) {
  for (const std::string_view json :
       {plainTab, std::string_view(
                      R"({"htmlContent":"","isLoading":true,"isPrivate":true,"pageSelectionText":"a",)"
                      R"("pageSelectionHTML":"<b>a</b>","tabID":"17:3","tabTitle":"","tabURL":"","textContent":"t"})")})
    EXPECT_EQ(boost::json::serialize(toJson(read<BrowserTabData>(json))), json);
}

const std::string window = R"({"isVisible":true,"activeTab":)" + std::string(plainTab) +
                           R"(,"activeTabIndex":1,"windowID":"3","windowIndex":2,"windowTitle":"News","tabsList":[)" +
                           std::string(plainTab) + "]}";

TEST(BrowserWindowData, IsReadAndWritten) {
  boost::json::value json = boost::json::parse(window);
  json.as_object()["activeTabID"] = "8"; // scripts add it; it is no field
  const auto record = read<BrowserWindowData>(boost::json::serialize(json));
  EXPECT_EQ(record.windowIndex, 2);
  EXPECT_FALSE(record.isPrivate);
  EXPECT_EQ(record.tabsList.size(), 1U);
  EXPECT_EQ(boost::json::serialize(toJson(record)), window);
}

TEST(BrowserWindowData, NeedsAllButItsBooleans) {
  for (const char* key : {"activeTab", "activeTabIndex", "windowID", "windowIndex", "windowTitle", "tabsList"}) {
    boost::json::value json = boost::json::parse(window);
    json.as_object().erase(key);
    EXPECT_EQ(mismatchOf(boost::json::serialize(json)), key);
  }
  boost::json::value json = boost::json::parse(window);
  json.as_object()["activeTab"] = ""; // what the scripts' template starts with
  EXPECT_EQ(mismatchOf(boost::json::serialize(json)), "activeTab");
}

} // namespace
} // namespace tabwright::browserdata
