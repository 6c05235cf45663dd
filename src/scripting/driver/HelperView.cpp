#include "scripting/driver/HelperView.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

// Each command is one call of a function of the helper's; the shapes of their parameters are in its worker.js.

namespace tabwright::scripting {

using Repeat = HelperWorker::Repeat;

namespace {

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

std::string textAt(const boost::json::object& fields, std::string_view key) {
  return std::string(fields.at(key).as_string());
}

TabState readTab(const boost::json::object& fields) {
  TabState tab;
  tab.id = fields.at("id").to_number<TabID>();
  tab.title = textAt(fields, "title");
  tab.url = textAt(fields, "url");
  tab.isLoading = fields.at("loading").as_bool();
  tab.isArriving = fields.at("arriving").as_bool();
  return tab;
}

WindowState readWindow(const boost::json::object& fields, ViewedBrowser& viewed) {
  WindowState window;
  window.id = fields.at("id").to_number<WindowID>();
  window.title = textAt(fields, "title");
  window.givenName = textAt(fields, "name");
  window.mode = fields.at("incognito").as_bool() ? WindowMode::incognito : WindowMode::normal;
  const boost::json::array& bounds = fields.at("bounds").as_array();
  window.bounds = {bounds.at(0).to_number<int>(), bounds.at(1).to_number<int>(), bounds.at(2).to_number<int>(),
                   bounds.at(3).to_number<int>()};
  const std::string state = textAt(fields, "state");
  window.isMinimized = state == "minimized";
  window.isFullScreen = state == "fullscreen" || state == "locked-fullscreen";
  for (const boost::json::value& entry : fields.at("tabs").as_array()) {
    const boost::json::object& tab = entry.as_object();
    window.tabs.push_back(readTab(tab));
    viewed.targets[window.tabs.back().id] = textAt(tab, "target");
    if (tab.at("opening").as_bool())
      viewed.opening.insert(window.tabs.back().id);
    if (tab.at("active").as_bool()) {
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

ViewedBrowser readHelperSnapshot(const boost::json::value& answer, std::string version) {
  ViewedBrowser viewed;
  const auto snapshot = std::make_shared<BrowserSnapshot>();
  snapshot->version = std::move(version);
  try {
    viewed.lastFocus = answer.at("focusedAt").to_number<double>();
    for (const boost::json::value& window : answer.at("windows").as_array())
      snapshot->windows.push_back(readWindow(window.as_object(), viewed));
  } catch (const std::exception& error) {
    throw platform::failure(DriverFault::refused,
                            fmt::format("the helper's snapshot can't be read ({})", error.what()));
  }
  viewed.snapshot = snapshot;
  return viewed;
}

std::optional<ViewedBrowser> withNews(const ViewedBrowser& before, const boost::json::value& answer) {
  ViewedBrowser viewed = before;
  std::vector<ToldTab> told;
  try {
    viewed.lastFocus = answer.at("focusedAt").to_number<double>();
    for (const boost::json::value& entry : answer.at("tabs").as_array()) {
      const boost::json::object& fields = entry.as_object();
      const ToldTab& tab =
          told.emplace_back(readTab(fields), fields.at("window").to_number<WindowID>(),
                            fields.at("index").to_number<std::size_t>(), fields.at("active").as_bool());
      if (fields.at("opening").as_bool())
        viewed.opening.insert(tab.state.id);
      else
        viewed.opening.erase(tab.state.id);
      if (fields.contains("target"))
        viewed.targets[tab.state.id] = textAt(fields, "target");
      else if (!viewed.targets.contains(tab.state.id))
        return std::nullopt;
    }
  } catch (const std::exception& error) {
    throw platform::failure(DriverFault::refused, fmt::format("the helper's news can't be read ({})", error.what()));
  }
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

HelperView::HelperView(std::unique_ptr<HelperWorker> worker, std::string version)
    : worker_(std::move(worker)), version_(std::move(version)) {}

ViewedBrowser HelperView::look(const Extent& extent, const CallLimits& limits) {
  std::optional<Seen> seen;
  if (!extent.isWhole) {
    const platform::MutexLock lock(mutex_);
    seen = seen_;
  }
  if (seen) {
    const boost::json::object since{{"instance", seen->instance},
                                    {"changes", seen->changes},
                                    {"tabs", boost::json::array(extent.tabs.begin(), extent.tabs.end())}};
    const boost::json::value answer = worker_->perform("snapshot", {{"since", since}}, Repeat::allowed, limits);
    if (answer.is_object() && answer.get_object().contains("windows"))
      return keep(answer, readHelperSnapshot(answer, version_));
    if (std::optional<ViewedBrowser> viewed = withNews(seen->viewed, answer))
      return keep(answer, std::move(*viewed));
  }
  const boost::json::value answer = worker_->perform("snapshot", {}, Repeat::allowed, limits);
  return keep(answer, readHelperSnapshot(answer, version_));
}

ViewedBrowser HelperView::keep(const boost::json::value& answer, ViewedBrowser viewed) {
  Seen seen{textAt(answer.as_object(), "instance"), answer.at("changes").to_number<std::int64_t>(), viewed};
  const platform::MutexLock lock(mutex_);
  // Of two looks at once the one that saw less may come last.
  if (!seen_ || seen_->instance != seen.instance || seen_->changes <= seen.changes)
    seen_ = std::move(seen);
  return viewed;
}

std::int64_t HelperView::perform(const ViewCommand& command, const CallLimits& limits) {
  const HelperCall call = std::visit([](const auto& each) { return callOf(each); }, command);
  const boost::json::value number = worker_->perform(call.function, call.parameters, call.repeat, limits);
  return number.is_number() ? number.to_number<std::int64_t>() : 0;
}

} // namespace tabwright::scripting
