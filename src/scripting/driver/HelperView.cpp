// Each command is one call of a function of the helper's; the shapes of their parameters are in its worker.js. A look
// asks for the news since the one before, which the helper may answer with the whole, and puts the tabs that are told
// of into a copy of what was seen. News that don't fit in are thrown away, and the whole is asked for: so a merged
// snapshot is never a guess.
#include "scripting/driver/HelperView.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

namespace tabwright::scripting {

using platform::JSONReader;
using Repeat = HelperCalls::Repeat;

namespace {

constexpr const char* answerer = "helper"; // where a mismatch is said to be

struct HelperCall {
  std::string_view function;
  boost::json::object parameters;
  Repeat repeat;
};

HelperCall callOf(const MakeTab& command) {
  HelperCall call{"makeTab", {{"window", command.window}, {"url", command.url}}, Repeat::never};
  if (command.index)
    call.parameters["index"] = *command.index;
  return call;
}

HelperCall callOf(const MakeWindow& command) {
  return {"makeWindow", {{"incognito", command.mode == WindowMode::incognito}, {"url", command.url}}, Repeat::never};
}

HelperCall callOf(const CloseTab& command) {
  return {"closeTab", {{"tab", command.tab}}, Repeat::never};
}

HelperCall callOf(const CloseWindow& command) {
  return {"closeWindow", {{"window", command.window}}, Repeat::never};
}

HelperCall callOf(const ActivateTab& command) {
  return {"activateTab", {{"tab", command.tab}}, Repeat::allowed};
}

HelperCall callOf(const RaiseWindow& command) {
  return {"raiseWindow", {{"window", command.window}}, Repeat::allowed};
}

HelperCall callOf(const SetGivenName& command) {
  return {"setGivenName", {{"window", command.window}, {"name", command.name}}, Repeat::allowed};
}

TabState readTab(const JSONReader& fields) {
  return {.id = fields.require<TabID>("id"),
          .title = fields.require<std::string>("title"),
          .url = fields.require<std::string>("url"),
          .isLoading = fields.require<bool>("loading"),
          .isArriving = fields.require<bool>("arriving")};
}

WindowBounds readBounds(const JSONReader& fields) {
  const auto bounds = fields.require<std::vector<int>>("bounds");
  if (bounds.size() != 4)
    throw fields.mismatch("expected four bounds");
  return {.left = bounds[0], .top = bounds[1], .width = bounds[2], .height = bounds[3]};
}

WindowState readWindow(const JSONReader& fields, ViewedBrowser& viewed) {
  WindowState window;
  window.id = fields.require<WindowID>("id");
  window.title = fields.require<std::string>("title");
  window.givenName = fields.require<std::string>("name");
  window.mode = fields.require<bool>("incognito") ? WindowMode::incognito : WindowMode::normal;
  window.bounds = readBounds(fields);
  // One of the names of chrome.windows.WindowState.
  const auto state = fields.require<std::string>("state");
  window.isMinimized = state == "minimized";
  window.isFullScreen = state == "fullscreen" || state == "locked-fullscreen";
  const auto tabs = fields.require<std::vector<JSONReader>>("tabs");
  for (const JSONReader& tab : tabs) {
    window.tabs.push_back(readTab(tab));
    viewed.targets[window.tabs.back().id] = tab.require<std::string>("target");
    if (tab.require<bool>("opening"))
      viewed.opening.insert(window.tabs.back().id);
    if (tab.require<bool>("active")) {
      window.activeTabIndex = window.tabs.size();
      window.title = window.tabs.back().title;
    }
  }
  return window;
}

/// One tab, and its place in the strip of its window.
struct ToldTab {
  TabState state;
  WindowID window = 0;
  std::size_t index = 0;
  bool isActive = false;
};

// Yields false when the tab has no place in its window. A new one moves those behind it on.
bool place(BrowserSnapshot& snapshot, const ToldTab& tab) {
  const auto window = std::ranges::find(snapshot.windows, tab.window, &WindowState::id);
  if (window == snapshot.windows.end() || tab.index > window->tabs.size())
    return false;
  const auto at = window->tabs.begin() + static_cast<std::ptrdiff_t>(tab.index);
  const auto known = std::ranges::find(window->tabs, tab.state.id, &TabState::id);
  if (known != window->tabs.end()) {
    // The strip has another order than the one we know.
    if (known != at)
      return false;
    *known = tab.state;
  } else {
    window->tabs.insert(at, tab.state);
    if (tab.index < window->activeTabIndex)
      ++window->activeTabIndex;
  }
  if (tab.isActive)
    window->activeTabIndex = tab.index + 1;
  if (tab.index + 1 == window->activeTabIndex)
    window->title = tab.state.title;
  return true;
}

} // namespace

ViewedBrowser readHelperSnapshot(const JSONReader& answer, std::string version) {
  ViewedBrowser viewed;
  const auto snapshot = std::make_shared<BrowserSnapshot>();
  snapshot->version = std::move(version);
  viewed.lastFocus = answer.require<double>("focusedAt");
  const auto windows = answer.require<std::vector<JSONReader>>("windows");
  for (const JSONReader& window : windows)
    snapshot->windows.push_back(readWindow(window, viewed));
  viewed.snapshot = snapshot;
  return viewed;
}

std::optional<ViewedBrowser> withNews(const ViewedBrowser& before, const JSONReader& answer) {
  ViewedBrowser viewed = before;
  std::vector<ToldTab> told;
  viewed.lastFocus = answer.require<double>("focusedAt");
  const auto tabs = answer.require<std::vector<JSONReader>>("tabs");
  for (const JSONReader& fields : tabs) {
    const ToldTab& tab = told.emplace_back(readTab(fields), fields.require<WindowID>("window"),
                                           fields.require<std::size_t>("index"), fields.require<bool>("active"));
    if (fields.require<bool>("opening"))
      viewed.opening.insert(tab.state.id);
    else
      viewed.opening.erase(tab.state.id);
    if (auto target = fields.find<std::string>("target"))
      viewed.targets[tab.state.id] = *std::move(target);
    // Targets are told of new tabs only; a tab that is new to us alone needs the whole.
    else if (!viewed.targets.contains(tab.state.id))
      return std::nullopt;
  }
  // Only the focus may have changed, so the snapshot itself is shared.
  if (told.empty())
    return viewed;
  std::ranges::sort(told, {}, &ToldTab::index); // so that each is inserted behind those that are before it
  auto snapshot = std::make_shared<BrowserSnapshot>(*before.snapshot);
  for (const ToldTab& tab : told) {
    if (!place(*snapshot, tab))
      return std::nullopt;
  }
  viewed.snapshot = std::move(snapshot);
  return viewed;
}

HelperView::HelperView(std::shared_ptr<HelperCalls> helper, std::string version)
    : helper_(std::move(helper)), version_(std::move(version)) {}

ViewedBrowser HelperView::look(const Extent& extent, const CallLimits& limits) {
  // A copy: other threads look too, and the one that is done first may replace it.
  std::optional<Seen> seen;
  if (!extent.isWhole) {
    const platform::MutexLock lock(mutex_);
    seen = seen_;
  }
  if (seen) {
    const boost::json::object since{{"instance", seen->instance},
                                    {"changes", seen->changes},
                                    {"tabs", boost::json::array(extent.tabs.begin(), extent.tabs.end())}};
    const boost::json::value news = helper_->perform("snapshot", {{"since", since}}, Repeat::allowed, limits);
    const JSONReader answer(news, answerer);
    // The helper's run or a window is another by now, or so much has changed that the whole is cheaper.
    if (answer.object().contains("windows"))
      return keep(answer, readHelperSnapshot(answer, version_));
    if (std::optional<ViewedBrowser> viewed = withNews(seen->viewed, answer))
      return keep(answer, std::move(*viewed));
  }
  const boost::json::value whole = helper_->perform("snapshot", {}, Repeat::allowed, limits);
  const JSONReader answer(whole, answerer);
  return keep(answer, readHelperSnapshot(answer, version_));
}

ViewedBrowser HelperView::keep(const JSONReader& answer, ViewedBrowser viewed) {
  Seen seen{answer.require<std::string>("instance"), answer.require<std::int64_t>("changes"), viewed};
  const platform::MutexLock lock(mutex_);
  // Of two looks at once the one that saw less may come last.
  if (!seen_ || seen_->instance != seen.instance || seen_->changes <= seen.changes)
    seen_ = std::move(seen);
  return viewed;
}

std::int64_t HelperView::perform(const ViewCommand& command, const CallLimits& limits) {
  const HelperCall call = std::visit([](const auto& each) { return callOf(each); }, command);
  const boost::json::value number = helper_->perform(call.function, call.parameters, call.repeat, limits);
  return number.is_null() ? 0 : JSONReader(number, answerer).read<std::int64_t>();
}

} // namespace tabwright::scripting
