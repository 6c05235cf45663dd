#include "support/NavigationKinds.h"

#include "platform/Failure.h"

#include <boost/json/parse.hpp>
#include <fmt/core.h>

#include <string_view>

// Each document has a title of its own, so that two of the same address can be told apart, and an end, so that it shows
// when a read came too early.

namespace tabwright::support {

namespace {

constexpr std::string_view page = R"html(<title>-</title><script>
document.title = 'page ' + performance.timeOrigin + Math.random();
</script>
<a id=link href="/page">on</a> <a id=blank href="/page" target=_blank>new</a>
<a id=fragment href="#x">within</a> <a id=script href="javascript:void(0)">none</a>
<form id=get action="/page"><input name=q><button id=send>send</button></form>
<form id=post action="/page" method=post><input name=p><button id=sendPost>send</button></form>
<p id=end>)html";

host::ParameterTexts javascript(const std::string& code) {
  return {{"jsCode", code}};
}

host::ParameterTexts click(const std::string& selector) {
  return {{"cssSelector", selector}};
}

/// The page in the front tab.
struct Shown {
  std::string title;
  std::string address;
  bool isWhole = false;
};

Shown read(const PerformAction& perform) {
  const boost::json::value read =
      perform("RunJavascriptInTab", javascript("return [document.title, location.href, "
                                               "document.getElementById('end') ? 'whole' : 'part']"));
  const auto text = [&](std::size_t index) { return std::string(read.at(index).as_string()); };
  return {text(0), text(1), text(2) == "whole"};
}

/// The title of the front window's tab that is in front: the one last opened, or the only one.
bool lists(const PerformAction& perform, const std::string& title) {
  const boost::json::value tabs = perform("GetListOfTabs", {});
  for (const boost::json::value& tab : tabs.as_array()) {
    if (tab.at("title").as_string() == title)
      return true;
  }
  return false;
}

} // namespace

NavigationKinds::NavigationKinds() {
  for (const char* path : {"/page", "/other"})
    pages_.serve(path, std::string(page));
  pages_.serveRaw("/redirect",
                  "HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  pages_.serveRaw("/nothing", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
  pages_.serveRaw("/file", "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: 1\r\n"
                           "Content-Disposition: attachment\r\nConnection: close\r\n\r\nx");
  using enum NavigationKind::Leads;
  const std::string run = "RunJavascriptInTab";
  kinds_ = {
      {"link", "ClickElement", click("#link")},
      {"form sent by get", "ClickElement", click("#send")},
      {"form sent by post", "ClickElement", click("#sendPost")},
      {"field whose form is sent",
       "SetFormFieldValue",
       {{"targetField", "q"}, {"newValue", "x"}, {"shouldSubmitParentForm", "true"}}},
      {"location of a script", run, javascript("location = '/page'")},
      {"location a task later", run, javascript("setTimeout(() => { location = '/page' }, 0)")},
      {"location a promise later", run, javascript("Promise.resolve().then(() => { location = '/page' })")},
      {"location.replace", run, javascript("location.replace('/page')")},
      {"history.back", run, javascript("history.back()")},
      {"redirect", run, javascript("location = '/redirect'")},
      {"ReloadTab", "ReloadTab", {}},
      {"OpenInTab", "OpenInTab", {{"newURL", pages_.url("/page")}}},
      {"set URL",
       "RunAppleScript",
       {{"script", fmt::format("set URL of active tab of window 1 to \"{}\"", pages_.url("/page"))}}},
      {"reload", "RunAppleScript", {{"script", "reload active tab of window 1"}}},
      {"reload of a page that lingers",
       "RunAppleScript",
       {{"script", "execute active tab of window 1 javascript \"onbeforeunload = () => { for (const end = Date.now() + "
                   "20; Date.now() < end;); }\"\nreload active tab of window 1"}}},
      {"go back", "RunAppleScript", {{"script", "go back active tab of window 1"}}},
      {"execute javascript",
       "RunAppleScript",
       {{"script", "execute active tab of window 1 javascript \"get.submit()\""}}},
      {"no content", run, javascript("location = '/nothing'"), nowhere},
      {"download", run, javascript("location = '/file'"), nowhere},
      {"script address", "ClickElement", click("#script"), nowhere},
      {"fragment", "ClickElement", click("#fragment"), nowhere},
      {"pushState", run, javascript("history.pushState(1, '', '/pushed')"), nowhere},
      {"refused port", run, javascript("location = 'http://127.0.0.1:1/'"), toAnErrorPage},
      {"new tab that is blocked", "ClickElement", click("#blank"), nowhere},
      {"OpenInTab, new",
       "OpenInTab",
       {{"targetSelection", "newTabInFrontWindow"}, {"newURL", pages_.url("/page")}},
       toANewTab},
  };
}

void NavigationKinds::prepare(const PerformAction& perform) const {
  for (const char* path : {"/page", "/other"}) {
    perform("OpenInTab", {{"newURL", pages_.url(path)}});
    perform("WaitForTabToFinishLoading", {{"readyState", "complete"}});
  }
}

NavigationKinds::Outcome NavigationKinds::navigateAndRead(const NavigationKind& kind, Reads first,
                                                          const PerformAction& perform) const {
  using enum NavigationKind::Leads;
  Outcome outcome;
  try {
    if (kind.name.ends_with("back")) // a page to go back from
      perform("OpenInTab", {{"newURL", pages_.url("/other")}});
    const Shown before = read(perform);
    perform(kind.action, kind.parameters);
    const bool listsOld = first == Reads::listOfTabs && kind.leads == elsewhere && lists(perform, before.title);
    const Shown after = read(perform);
    const bool isSame = after.title == before.title;
    outcome.isStale = listsOld || isSame != (kind.leads == nowhere) ||
                      (kind.leads == toAnErrorPage) != after.address.starts_with("chrome-error:");
    if (first == Reads::listOfTabs && kind.leads == elsewhere && !lists(perform, after.title))
      outcome.isStale = true;
    outcome.isPartial = !after.isWhole && kind.leads != toAnErrorPage;
    if (kind.leads == toANewTab && !isSame)
      perform("CloseTab", {});
  } catch (const platform::Failure& failure) {
    outcome.failure = failure.errorDescription();
  }
  if (!outcome.isRight() || kind.leads == toAnErrorPage || kind.name == "pushState")
    prepare(perform);
  return outcome;
}

} // namespace tabwright::support
