// Programs whose page or browser leaves them in the middle: the real engine and interpreter over a real Chromium.
#include "RealRoad.h"
#include "engine/AppleScriptSnippets.h"

namespace tabwright::scripting {
namespace {

using engine::AppleScriptSnippets;
using Texts = std::vector<std::string>;

using Road = RealRoad;

TEST_F(Road, APageThatGoesAwayDuringItsJobIsTold) {
  support::PageServer pages;
  pages.serve("/page", "<title>P</title>");
  open(pages.url("/page"));
  const std::string job = AppleScriptSnippets::jobForFrontTab(
      "location.href = '" + pages.url("/page") + "?again'; await new Promise(() => {})", 30.0, 0.2);
  EXPECT_EQ(failureOf([&] { runLines<Texts>(chromiumTarget(), job); }),
            "AppleScriptRuntimeError.pageLoadDuringExecution");
}

TEST_F(Road, ABrowserThatDiesDuringARunEndsIt) {
  support::ChromiumProcess doomed;
  answering = makeDriver(doomed);
  const std::string failure = failureOf([&] {
    std::jthread killer([&] {
      eventually([&] { return answering->snapshot(limits())->windows.at(0).tabs.at(0).title == "busy"; });
      doomed.kill();
    });
    runLines<Texts>(chromiumTarget(), AppleScriptSnippets::jobForFrontTab(
                                          "document.title = 'busy'; await new Promise(() => {})", 60.0, 0.2));
  });
  EXPECT_EQ(failure.substr(0, 11), "ScriptError");
  EXPECT_TRUE(leftNoScript());
}

} // namespace
} // namespace tabwright::scripting
