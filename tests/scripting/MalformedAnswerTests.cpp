// A browser that answers one question in a shape that the protocol doesn't have: the driver says where.
#include "platform/BrowserTable.h"
#include "scripting/driver/ChromiumDriver.h"
#include "support/FailureText.h"
#include "support/ScratchFolder.h"
#include "support/ScriptedBrowser.h"

#include <boost/json/parse.hpp>
#include <fmt/core.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace tabwright::scripting {
namespace {

using support::ScriptedBrowser;

struct Answer {
  std::string_view question; ///< the method; for evaluations how the JavaScript begins
  std::string_view result;   ///< empty for a refusal
};

// A browser that has the helper, with one window and one tab.
const std::vector<Answer> rightAnswers{
    {"Browser.getVersion", R"({"product":"Chrome/156.0.1.2"})"},
    {"Target.getTargets", R"({"targetInfos":[{"targetId":"A1","type":"service_worker","title":"",
       "url":"chrome-extension://pjbehgeaikpfphapeepnoedabkdomakk/worker.js"}]})"},
    {"Target.attachToTarget", R"({"sessionId":"S"})"},
    {"globalThis.tabwright", R"({"result":{"type":"string","value":"9.9"}})"},
    {"tabwright.perform", R"({"result":{"type":"object","value":{"value":{"instance":"i","changes":1,"focusedAt":0,
       "windows":[{"id":1,"title":"t","name":"","incognito":false,"bounds":[0,0,9,9],"state":"normal",
         "tabs":[{"id":2,"title":"t","url":"u","loading":false,"arriving":false,"target":"A2","opening":false,
                  "active":true}]}]}}}})"},
    {"Page.getNavigationHistory", R"({"currentIndex":0,"entries":[{"id":1},{"id":2}]})"},
    {"(document.readyState", R"({"result":{"type":"number","value":0}})"},
};
// The answers of one that takes none, so that the protocol alone must tell.
const std::vector<Answer> withoutHelper{
    {"Extensions", ""},
    {"Target.getTargets", R"({"targetInfos":[{"targetId":"A2","type":"page","title":"t","url":"u"}]})"},
};

std::vector<Answer> operator+(std::vector<Answer> first, const std::vector<Answer>& then) {
  first.insert(first.end(), then.begin(), then.end());
  return first;
}

// The failure when the tab of such a browser goes forward; the first answer to a question counts.
std::string failureWith(const std::vector<Answer>& answers) {
  ScriptedBrowser browser([&](ScriptedBrowser::Wire& wire, const boost::json::object& call) {
    const boost::json::object& parameters = call.at("params").as_object();
    const std::string asked(parameters.contains("expression") ? parameters.at("expression").as_string()
                                                              : call.at("method").as_string());
    for (const Answer& answer : answers) {
      if (asked.starts_with(answer.question))
        return answer.result.empty() ? wire.refuse(call, -32601, "not here")
                                     : wire.answer(call, boost::json::parse(answer.result).as_object());
    }
    wire.answer(call, {});
  });
  const testsupport::ScratchFolder folder;
  folder.write(folder / "manifest.json", R"({"version":"1.0"})");
  folder.write(folder / "DevToolsActivePort", fmt::format("{}\n{}", browser.endpoint().port, browser.endpoint().path));
  const platform::RunningBrowser process{
      .process = ::getpid(), .owner = ::geteuid(), .profileDirectory = folder.path(), .isPlacedByWindows = true};
  ChromiumDriver driver(*platform::findBrowser("chromium"), {.helperDirectory = folder.path(),
                                                             .findRunning = [&] { return std::vector{process}; },
                                                             .looksAhead = LooksAhead::no});
  const CallLimits limits{std::chrono::steady_clock::now() + std::chrono::seconds(60), {}};
  return testsupport::failureText([&] {
    const TabID tab = driver.snapshot(limits)->windows.at(0).tabs.at(0).id;
    return driver.perform(GoInHistory{tab, History::forward}, limits);
  });
}

TEST(MalformedAnswer, IsToldByItsPlace) {
  const struct {
    std::vector<Answer> answers;
    const char* complaint;
  } cases[]{
      {{{"Browser.getVersion", R"({"product":5})"}}, "product: expected a text, found a number"},
      {{{"Target.getTargets", R"({"targetInfos":{}})"}}, "targetInfos: expected a list, found an object"},
      {{{"Target.getTargets", R"({"targetInfos":[{"targetId":"A","type":null}]})"}},
       "targetInfos[0].type: expected a text, found null"},
      {{{"Target.attachToTarget", "{}"}}, "sessionId: the key is missing"},
      {{{"tabwright.perform", R"({"result":5})"}}, "result: expected an object, found a number"},
      {{{"tabwright.perform", R"({"exceptionDetails":{"text":1}})"}},
       "exceptionDetails.text: expected a text, found a number"},
      {{{"tabwright.perform", R"({"result":{"type":"object","value":[]}})"}},
       "helper: expected an object, found a list"},
      {{{"tabwright.perform", R"({"result":{"type":"object","value":{"value":{"focusedAt":0,"windows":[{}]}}}})"}},
       "helper.windows[0].id: the key is missing"},
      {{{"Page.getNavigationHistory", R"({"currentIndex":0,"entries":[{},{"id":"2"}]})"}},
       "entries[1].id: expected a whole number, found a text"},
      {withoutHelper + std::vector<Answer>{{"Browser.getWindowForTarget", R"({"windowId":true})"}},
       "windowId: expected a whole number, found a boolean"},
      {withoutHelper + std::vector<Answer>{{"Browser.getWindowForTarget", R"({"windowId":1,"bounds":{"left":0.5}})"}},
       "bounds.left: expected a whole number, found a number"},
  };
  for (const auto& [answers, complaint] : cases)
    EXPECT_EQ(failureWith(answers + rightAnswers),
              fmt::format("The browser gave an answer that isn’t understood: {}.", complaint));
  EXPECT_EQ(failureWith(rightAnswers), "no failure");
}

} // namespace
} // namespace tabwright::scripting
