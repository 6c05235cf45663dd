// A look lists the page targets in one call, asks for the window of each in calls that are all under way at once, and
// then asks pages whether they are visible, in each window until one says so. What the protocol can't tell is kept
// here: who was seen first, who was in front.
#include "scripting/driver/ProtocolView.h"

#include "devtools/Waiting.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <utility>

namespace tabwright::scripting {

using devtools::concernsBrowser;
using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::PendingCall;
using platform::JSONReader;
using namespace std::chrono_literals;

namespace {

/// A page that is busy or shows a dialog doesn't say; it counts as not visible.
bool isVisible(PageSessions& pages, const std::string& target, const CallLimits& limits) {
  try {
    return pages.require(target, limits)
               ->evaluate("document.visibilityState === 'visible'", limits.within(500ms))
               .value == true;
  } catch (const DevToolsFailure& failure) {
    if (concernsBrowser(failure) || failure.kind() == DevToolsFault::stopped)
      throw;
    return false;
  }
}

} // namespace

ProtocolView::ProtocolView(std::shared_ptr<devtools::Connection> connection, PageSessions& pages, std::string version)
    : connection_(std::move(connection)), pages_(pages), version_(std::move(version)) {}

// ---------------------------------------------------------------------------------------------------------- looking

/// 29 bits of the target's random name: small enough to be an integer of every script. Targets that share them take the
/// next free number.
TabID ProtocolView::tabOf(const std::string& target) {
  const auto known = tabs_.find(target);
  if (known != tabs_.end())
    return known->second;
  std::uint32_t number = 0;
  std::from_chars(target.data(), target.data() + std::min<std::size_t>(target.size(), 8), number, 16);
  TabID tab = number & 0x1FFFFFFF;
  // 0 is no id.
  while (tab == 0 || (taken_.contains(tab) && taken_.at(tab) != target))
    ++tab;
  tabs_[target] = tab;
  taken_[tab] = target;
  return tab;
}

std::vector<ProtocolView::Page> ProtocolView::listPages(const CallLimits& limits) {
  const std::vector<devtools::TargetInfo> targets = devtools::listTargets(*connection_, {}, limits);
  std::vector<Page> pages;
  const platform::MutexLock lock(mutex_);
  for (const devtools::TargetInfo& target : targets) {
    // Developer tools are pages to the protocol and tabs to nobody.
    if (target.type != "page" || target.url.starts_with("devtools:"))
      continue;
    pages.push_back({target, tabOf(target.id)});
    if (std::ranges::find(seen_, target.id) == seen_.end())
      seen_.push_back(target.id);
  }
  // Closed pages leave the order, so that it never grows.
  std::erase_if(seen_, [&](const std::string& id) {
    return std::ranges::none_of(pages, [&](const Page& page) { return page.target.id == id; });
  });
  std::ranges::sort(pages, {}, [&](const Page& page) REQUIRES(mutex_) {
    return std::ranges::find(seen_, page.target.id) - seen_.begin();
  });
  return pages;
}

ViewedBrowser ProtocolView::look(const Extent& /*always the whole*/, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  // Under way while the pages are listed.
  const auto contexts = connection_->send("Target.getBrowserContexts", {});
  const std::vector<Page> pages = listPages(limits);
  std::vector<std::shared_ptr<PendingCall>> calls;
  calls.reserve(pages.size());
  for (const Page& page : pages)
    calls.push_back(connection_->send("Browser.getWindowForTarget", {{"targetId", page.target.id}}));
  const std::string ordinary = devtools::ordinaryContext(contexts->await(limits));

  ViewedBrowser viewed;
  const auto snapshot = std::make_shared<BrowserSnapshot>();
  snapshot->version = version_;
  for (std::size_t index = 0; index < pages.size(); ++index) {
    const Page& page = pages[index];
    const PendingCall::Answer answer = calls[index]->await(limits);
    if (!answer) // closed meanwhile, or not in a window
      continue;
    const JSONReader reply(*answer);
    const auto id = reply.require<WindowID>("windowId");
    auto window = std::ranges::find(snapshot->windows, id, &WindowState::id);
    if (window == snapshot->windows.end()) {
      const auto bounds = reply.require<JSONReader>("bounds");
      const auto shape = bounds.find<std::string>("windowState");
      WindowState state;
      state.id = id;
      state.mode = ordinary.empty() || page.target.context == ordinary ? WindowMode::normal : WindowMode::incognito;
      state.bounds = {.left = bounds.require<int>("left"),
                      .top = bounds.require<int>("top"),
                      .width = bounds.require<int>("width"),
                      .height = bounds.require<int>("height")};
      state.isMinimized = shape == "minimized";
      state.isFullScreen = shape == "fullscreen";
      window = snapshot->windows.insert(snapshot->windows.end(), std::move(state));
    }
    window->tabs.push_back({.id = page.tab, .title = page.target.title, .url = page.target.url});
    viewed.targets[page.tab] = page.target.id;
    // One visible page is enough for a window, and each question is a round trip to a page.
    if (window->activeTabIndex == 0 && isVisible(pages_, page.target.id, limits))
      window->activeTabIndex = window->tabs.size();
  }

  const platform::MutexLock lock(mutex_);
  for (WindowState& window : snapshot->windows) {
    window.activeTabIndex = std::max<std::size_t>(window.activeTabIndex, 1); // a minimised window shows none
    window.title = window.tabs[window.activeTabIndex - 1].title;
    if (const auto name = names_.find(window.id); name != names_.end())
      window.givenName = name->second;
    // A window that we haven't met goes behind those that we have.
    if (std::ranges::find(order_, window.id) == order_.end())
      order_.push_back(window.id);
  }
  std::ranges::sort(snapshot->windows, {}, [&](const WindowState& window) REQUIRES(mutex_) {
    return std::ranges::find(order_, window.id) - order_.begin();
  });
  viewed.snapshot = snapshot;
  return viewed;
}

void ProtocolView::toFront(WindowID window) {
  const platform::MutexLock lock(mutex_);
  std::erase(order_, window);
  order_.insert(order_.begin(), window);
}

// ---------------------------------------------------------------------------------------------------------- finding

std::string ProtocolView::requireTarget(TabID tab, const CallLimits& limits) {
  for (const Page& page : listPages(limits)) {
    if (page.tab == tab)
      return page.target.id;
  }
  throw platform::failure(DriverFault::noSuchTab, std::to_string(tab));
}

std::string ProtocolView::activeTarget(WindowID id, const CallLimits& limits) {
  const ViewedBrowser viewed = look({.isWhole = true}, limits);
  for (const WindowState& window : viewed.snapshot->windows) {
    if (window.id == id)
      return viewed.targets.at(window.tabs[window.activeTabIndex - 1].id);
  }
  throw platform::failure(DriverFault::noSuchWindow, std::to_string(id));
}

// ---------------------------------------------------------------------------------------------------------- commands

std::int64_t ProtocolView::perform(const ViewCommand& command, const CallLimits& limits) {
  return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
}

/// The protocol opens a tab in the window used last, so that window is raised first; it can't be placed in the strip.
TabID ProtocolView::carryOut(const MakeTab& command, const CallLimits& limits) {
  carryOut(RaiseWindow{command.window}, limits);
  const std::string target =
      devtools::createTarget(*connection_, {{"url", command.url.empty() ? "chrome://newtab/" : command.url}}, limits);
  const platform::MutexLock lock(mutex_);
  return tabOf(target);
}

WindowID ProtocolView::carryOut(const MakeWindow& command, const CallLimits& limits) {
  boost::json::object parameters{{"url", command.url.empty() ? "about:blank" : command.url}, {"newWindow", true}};
  if (command.mode == WindowMode::incognito) {
    const boost::json::value context = connection_->call("Target.createBrowserContext", {}, {}, limits);
    parameters["browserContextId"] = JSONReader(context).require<std::string>("browserContextId");
  }
  const std::string target = devtools::createTarget(*connection_, std::move(parameters), limits);
  const boost::json::value reply = connection_->call("Browser.getWindowForTarget", {{"targetId", target}}, {}, limits);
  const auto window = JSONReader(reply).require<WindowID>("windowId");
  toFront(window);
  return window;
}

void ProtocolView::closeTarget(const std::string& target, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  connection_->call("Target.closeTarget", {{"targetId", target}}, {}, limits);
  // It answers before the page is gone.
  while (connection_->send("Target.getTargetInfo", {{"targetId", target}})->await(limits))
    devtools::pause(5ms, "the page is closing", limits);
}

void ProtocolView::carryOut(const CloseTab& command, const CallLimits& limits) {
  closeTarget(requireTarget(command.tab, limits), limits);
}

void ProtocolView::carryOut(const CloseWindow& command, const CallLimits& limits) {
  const ViewedBrowser viewed = look({.isWhole = true}, limits);
  const auto window = std::ranges::find(viewed.snapshot->windows, command.window, &WindowState::id);
  if (window == viewed.snapshot->windows.end())
    throw platform::failure(DriverFault::noSuchWindow, std::to_string(command.window));
  // A window goes with its last tab; the protocol closes no windows.
  for (const TabState& tab : window->tabs)
    closeTarget(viewed.targets.at(tab.id), limits);
}

/// The protocol can't but raise the window with it.
void ProtocolView::carryOut(const ActivateTab& command, const CallLimits& limits) {
  connection_->call("Target.activateTarget", {{"targetId", requireTarget(command.tab, limits)}}, {}, limits);
}

void ProtocolView::carryOut(const RaiseWindow& command, const CallLimits& limits) {
  connection_->call("Target.activateTarget", {{"targetId", activeTarget(command.window, limits)}}, {}, limits);
  toFront(command.window);
}

void ProtocolView::carryOut(const SetGivenName& command, const CallLimits& limits) {
  activeTarget(command.window, limits); // throws for a window that isn't there
  const platform::MutexLock lock(mutex_);
  names_[command.window] = command.name;
}

} // namespace tabwright::scripting
