// The workflows that ship as examples, on a real Chromium.
#include "RealRoad.h"
#include "host/workflow/WorkflowCheck.h"
#include "host/workflow/WorkflowReader.h"
#include "host/workflow/WorkflowRunner.h"
#include "support/SourceFolder.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tabwright::scripting {
namespace {

namespace workflow = host::workflow;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Lines final : public workflow::WorkflowObserver {
public:
  std::vector<std::string> printed_;

  void stepBegins(const workflow::Step&, const workflow::Variables&, std::size_t) override {}
  void stepEnds(const workflow::Step&, const std::string&) override {}
  void roundBegins(const workflow::Step&, std::size_t, std::size_t, std::size_t) override {}
  void noticed(const workflow::Step&, const platform::Notice&) override {}
  void printed(const std::string& text) override { printed_.push_back(text); }
};

class Examples : public RealRoad {
protected:
  /// What an example prints.
  std::vector<std::string> run(const std::string& name, const std::map<std::string, std::string>& variables) {
    std::ifstream file(testsupport::sourceFolder() / "examples" / (name + ".yaml"));
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    const workflow::Workflow steps = workflow::readWorkflow(source);
    workflow::checkWorkflow(steps, catalogue());
    Lines lines;
    testsupport::runTask(
        workflow::runWorkflow(steps, workflow::firstVariables(steps, variables), catalogue(), nobody(), lines, {}));
    return lines.printed_;
  }

  std::size_t tabsAt(const std::string& url) {
    std::size_t count = 0;
    const auto seen = snapshot();
    for (const WindowState& window : seen->windows) {
      for (const TabState& tab : window.tabs)
        count += tab.url == url ? 1 : 0;
    }
    return count;
  }

  support::PageServer pages;
};

TEST_F(Examples, CloseDuplicateTabsLeavesOneOfEach) {
  pages.serve("/a", "<title>A</title>");
  pages.serve("/b", "<title>B</title>");
  for (const char* page : {"/a", "/b", "/a", "/a"})
    open(pages.url(page));
  const boost::json::value window = perform(
      "CreateWindow", {{"targetContext", "chromium"}, {"windowType", "privateWindow"}, {"newURL", pages.url("/a")}});
  perform("WaitForTabToFinishLoading", {{"targetContext", "chromium"}});
  EXPECT_THAT(run("close-duplicate-tabs", {}), ElementsAre(StartsWith("2 of ")));
  EXPECT_EQ(tabsAt(pages.url("/a")), 2U) << "one of them private";
  EXPECT_EQ(tabsAt(pages.url("/b")), 1U);
  perform("CloseWindow", {{"targetWindow", boost::json::serialize(window)}});
}

TEST_F(Examples, SaveOpenTabsPrintsThemAsMarkdown) {
  pages.serve("/a", "<title>One &amp; only</title>");
  open(pages.url("/a"));
  EXPECT_THAT(run("save-open-tabs", {{"only", pages.url("/")}}),
              ElementsAre("- [One & only](" + pages.url("/a") + ")"));
}

TEST_F(Examples, FillInAFormReadsTheAnswerAndTidiesUp) {
  const std::string page = "file://" + testsupport::sourceFolder().string() + "/resources/demo/index.html";
  EXPECT_THAT(run("fill-in-a-form", {{"page", page}, {"who", "Ann"}}), ElementsAre(HasSubstr("Good morning, Ann!")));
  EXPECT_EQ(tabsAt(page), 0U);
}

TEST_F(Examples, OpenReadingListTellsWhatDidNotLoad) {
  pages.serve("/a", "<title>A</title>");
  const boost::json::array list{pages.url("/a"), "no address", "file:///nowhere.html"};
  EXPECT_THAT(
      run("open-reading-list", {{"pages", boost::json::serialize(list)}}),
      ElementsAre("Not loaded:", StartsWith("- no address (newURL needs a value."),
                  "- file:///nowhere.html (The page file:///nowhere.html could not be loaded: ERR_FILE_NOT_FOUND.)"));
  EXPECT_EQ(tabsAt(pages.url("/a")), 1U);
  const auto seen = snapshot();
  for (const WindowState& window : seen->windows) {
    for (const TabState& tab : window.tabs) {
      if (tab.url == pages.url("/a") || tab.url == "file:///nowhere.html")
        driver().closeTab(tab.id, limits());
    }
  }
}

TEST_F(Examples, DismissBannersClicksWhereThereIsOne) {
  pages.serve("/banner", "<title>With</title><div id=b>Cookies? <button onclick='b.remove()'>No</button></div>");
  pages.serve("/plain", "<title>Without</title>");
  const TabID with = open(pages.url("/banner"));
  open(pages.url("/plain"));
  EXPECT_THAT(run("dismiss-banners", {{"buttons", "#none, #b button"}}), testing::Contains("With: dismissed").Times(1));
  EXPECT_EQ(evaluate(with, "document.getElementById('b')"), nullptr);
}

} // namespace
} // namespace tabwright::scripting
