#include "support/ModelBrowser.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::testsupport {

using namespace scripting;

WindowID ModelBrowser::addWindow(const std::vector<Page>& pages, WindowMode mode) {
  const platform::MutexLock lock(mutex_);
  WindowState window;
  window.id = nextWindow_++;
  window.mode = mode;
  for (const Page& page : pages)
    window.tabs.push_back(newTab(page.title, page.url));
  window.activeTabIndex = pages.empty() ? 0 : 1;
  window.title = pages.empty() ? "DevTools" : pages.front().title;
  windows_.push_back(window);
  snapshot_.reset();
  return window.id;
}

void ModelBrowser::change(const std::function<void(std::vector<WindowState>&)>& how) {
  const platform::MutexLock lock(mutex_);
  how(windows_);
  snapshot_.reset();
}

std::vector<WindowState> ModelBrowser::windows() {
  const platform::MutexLock lock(mutex_);
  return windows_;
}

std::vector<std::string> ModelBrowser::commands() {
  const platform::MutexLock lock(mutex_);
  return commands_;
}

std::shared_ptr<const BrowserSnapshot> ModelBrowser::snapshot(const CallLimits&) {
  throwIfFailing();
  const platform::MutexLock lock(mutex_);
  ++snapshotsAsked;
  if (!snapshot_) {
    ++snapshotsTaken;
    snapshot_ = std::make_shared<const BrowserSnapshot>(BrowserSnapshot{windows_, "156.0"});
  }
  return snapshot_;
}

boost::json::value ModelBrowser::evaluate(TabID id, const std::string& javascript, const CallLimits&) {
  throwIfFailing();
  {
    const platform::MutexLock lock(mutex_);
    ++evaluations;
    tab(id);
    snapshot_.reset(); // a page may have changed anything
  }
  return page ? page(id, javascript) : boost::json::value();
}

std::int64_t ModelBrowser::perform(const BrowserCommand& command, const CallLimits&) {
  return dispatch(command, [this](const auto& each) {
    const platform::MutexLock lock(mutex_);
    return carryOut(each);
  });
}

TabID ModelBrowser::carryOut(const MakeTab& command) {
  const auto& [windowID, index, url] = command;
  note(fmt::format("make tab in {}{} {}", windowID, index ? fmt::format(" at {}", *index) : "", url));
  WindowState& owner = window(windowID);
  const std::size_t position = std::min(index.value_or(owner.tabs.size()), owner.tabs.size());
  owner.tabs.insert(owner.tabs.begin() + static_cast<std::ptrdiff_t>(position), newTab("New Tab", url));
  owner.activeTabIndex = position + 1;
  return owner.tabs[position].id;
}

WindowID ModelBrowser::carryOut(const MakeWindow& command) {
  const auto& [mode, url] = command;
  note(fmt::format("make {} window {}", mode == WindowMode::incognito ? "incognito" : "normal", url));
  WindowState made;
  made.id = nextWindow_++;
  made.mode = mode;
  made.tabs.push_back(newTab("New Tab", url));
  made.activeTabIndex = 1;
  made.title = "New Tab";
  windows_.insert(windows_.begin(), made);
  return made.id;
}

void ModelBrowser::carryOut(const CloseTab& command) {
  const auto& [id] = command;
  note(fmt::format("close tab {}", id));
  WindowState& owner = windowOfTab(id);
  std::erase_if(owner.tabs, [&](const TabState& each) { return each.id == id; });
  owner.activeTabIndex = std::min(owner.activeTabIndex, owner.tabs.size());
  std::erase_if(windows_, [&](const WindowState& each) { return each.id == owner.id && each.tabs.empty(); });
}

void ModelBrowser::carryOut(const CloseWindow& command) {
  const auto& [id] = command;
  note(fmt::format("close window {}", id));
  window(id);
  std::erase_if(windows_, [&](const WindowState& each) { return each.id == id; });
}

void ModelBrowser::carryOut(const ActivateTab& command) {
  const auto& [id] = command;
  note(fmt::format("activate tab {}", id));
  WindowState& owner = windowOfTab(id);
  const auto position = std::ranges::find(owner.tabs, id, &TabState::id) - owner.tabs.begin();
  owner.activeTabIndex = static_cast<std::size_t>(position) + 1;
  owner.title = owner.tabs[owner.activeTabIndex - 1].title;
}

void ModelBrowser::carryOut(const Navigate& command) {
  const auto& [id, url] = command;
  note(fmt::format("navigate {} {}", id, url));
  tab(id).url = url;
  tab(id).isLoading = true;
}

void ModelBrowser::carryOut(const GoInHistory& command) {
  const auto& [id, direction] = command;
  note(fmt::format("go {} {}", direction == History::back ? "back" : "forward", id));
}

void ModelBrowser::carryOut(const Reload& command) {
  const auto& [id] = command;
  note(fmt::format("reload {}", id));
}
void ModelBrowser::carryOut(const StopLoading& command) {
  const auto& [id] = command;
  note(fmt::format("stop {}", id));
}

void ModelBrowser::carryOut(const RaiseWindow& command) {
  const auto& [id] = command;
  note(fmt::format("raise {}", id));
  const auto at = std::ranges::find(windows_, id, &WindowState::id);
  if (at == windows_.end())
    throw platform::failure(DriverFault::noSuchWindow, std::to_string(id));
  std::rotate(windows_.begin(), at, at + 1);
}

void ModelBrowser::carryOut(const SetBounds& command) {
  const auto& [id, bounds] = command;
  note(fmt::format("bounds {} {} {} {} {}", id, bounds.left, bounds.top, bounds.width, bounds.height));
  window(id).bounds = bounds;
}

void ModelBrowser::carryOut(const SetShape& command) {
  const auto& [id, shape] = command;
  note(fmt::format("shape {} {}", id,
                   shape == WindowShape::normal      ? "normal"
                   : shape == WindowShape::minimized ? "minimized"
                                                     : "full screen"));
  window(id).isMinimized = shape == WindowShape::minimized;
  window(id).isFullScreen = shape == WindowShape::fullScreen;
}

void ModelBrowser::carryOut(const SetGivenName& command) {
  const auto& [id, name] = command;
  note(fmt::format("name {} {}", id, name));
  window(id).givenName = name;
}

void ModelBrowser::carryOut(const Activate& /*command*/) {
  note("activate");
}

void ModelBrowser::carryOut(const Quit& /*command*/) {
  note("quit");
  runs = false;
}

void ModelBrowser::note(std::string command) {
  throwIfFailing();
  commands_.push_back(std::move(command));
  snapshot_.reset();
}

void ModelBrowser::throwIfFailing() const {
  if (failure)
    throw *failure;
}

WindowState& ModelBrowser::window(WindowID id) {
  const auto found = std::ranges::find(windows_, id, &WindowState::id);
  if (found == windows_.end())
    throw platform::failure(DriverFault::noSuchWindow, std::to_string(id));
  return *found;
}

WindowState& ModelBrowser::windowOfTab(TabID id) {
  for (WindowState& each : windows_) {
    if (std::ranges::find(each.tabs, id, &TabState::id) != each.tabs.end())
      return each;
  }
  throw platform::failure(DriverFault::noSuchTab, std::to_string(id));
}

TabState& ModelBrowser::tab(TabID id) {
  return *std::ranges::find(windowOfTab(id).tabs, id, &TabState::id);
}

TabState ModelBrowser::newTab(const std::string& title, const std::string& url) {
  return {nextTab_++, title, url, false};
}

} // namespace tabwright::testsupport
