#include "app/ResultFiles.h"
#include "browserdata/BrowserTabEntity.h"
#include "support/FailureText.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tabwright::app {
namespace {

using browserdata::BrowserTabEntity;
using TabTraits = intents::ValueTraits<BrowserTabEntity>;

class ResultFiles : public ::testing::Test {
protected:
  static BrowserTabEntity tabWith(const std::string& data) {
    BrowserTabEntity tab;
    tab.fullID = "org.chromium.chromium:8";
    tab.targetContext = {"org.chromium.chromium", "Chromium"};
    tab.selectionRTFD = intents::IntentFile{data, "selection.rtfd", "com.apple.rtfd"};
    return tab;
  }

  testsupport::ScratchFolder folder;
};

TEST_F(ResultFiles, AreWrittenUnderNamesOfTheirOwnAndFoundAgainByTheirPath) {
  const BrowserTabEntity first = tabWith("{\\rtf1 one}");
  intents::ValueType list = TabTraits::type();
  list.isList = true;
  const host::ActionResult result = withFilesIn(
      folder / "new", {boost::json::array{TabTraits::toJson(first), TabTraits::toJson(tabWith({"\0\xff", 2}))}, list});
  EXPECT_EQ(folder.content(folder / "new/selection.rtfd"), "{\\rtf1 one}");
  EXPECT_EQ(folder.content(folder / "new/selection 2.rtfd"), std::string("\0\xff", 2));
  const boost::json::value& tab = result.value.at(0);
  EXPECT_EQ(tab.at("selectionRTFD"), (boost::json::value{{"filename", "selection.rtfd"},
                                                         {"type", "com.apple.rtfd"},
                                                         {"path", (folder / "new/selection.rtfd").string()}}));
  EXPECT_EQ(TabTraits::fromJson(tab).fullID, first.fullID);
}

TEST_F(ResultFiles, LeaveResultsWithoutFilesAsTheyAre) {
  BrowserTabEntity tab = tabWith("x");
  tab.selectionRTFD.reset();
  tab.title = R"({"filename":"a","type":"b","data":"AA=="})";
  const boost::json::value value = TabTraits::toJson(tab);
  EXPECT_EQ(withFilesIn(folder.path(), {value, TabTraits::type()}).value, value);
  EXPECT_EQ(withFilesIn(folder.path(), {nullptr, TabTraits::type()}).value, nullptr);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ResultFiles, StayInTheFolderThatWasNamed) {
  BrowserTabEntity tab = tabWith("x");
  tab.selectionRTFD->filename = "../../escape.rtf";
  static_cast<void>(withFilesIn(folder / "in", {TabTraits::toJson(tab), TabTraits::type()}));
  EXPECT_EQ(folder.content(folder / "in/escape.rtf"), "x");
}

TEST_F(ResultFiles, TellWhereTheyCouldNotBeWritten) {
  std::ofstream(folder / "file") << "x";
  const std::string path = (folder / "file/inside").string();
  EXPECT_EQ(testsupport::failureText(
                [&] { return withFilesIn(path, {TabTraits::toJson(tabWith("x")), TabTraits::type()}).value; }),
            "Couldn't make the folder “" + path + "”: Not a directory");
}

} // namespace
} // namespace tabwright::app
