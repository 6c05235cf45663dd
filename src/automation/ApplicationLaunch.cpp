// An application is on the desktop's list once it has a window, which is also when its launch is finished. So the wait
// for the one is the wait for the other. Waiting looks at the list again and again, as a start by a desktop entry
// doesn't tell which process will have the window.
#include "automation/ApplicationLaunch.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"
#include "platform/DesktopFault.h"
#include "platform/Logger.h"

#include <boost/system/system_error.hpp>

#include <algorithm>
#include <chrono>

namespace tabwright::automation {

using targets::RunningApplication;

namespace {

const platform::Logger log("AxeApp");

constexpr std::chrono::milliseconds pause{200};
constexpr std::chrono::milliseconds longestLaunch{5000};

/// A browser's id has several desktop entries; the first that is installed counts.
std::optional<platform::InstalledApplication> findInstalled(const std::string& id,
                                                            platform::InstalledApplications& installed) {
  if (const platform::BrowserFacts* browser = platform::findBrowser(id)) {
    for (const std::string_view entry : browser->desktopEntries) {
      if (auto application = installed.find(entry))
        return application;
    }
  }
  return installed.find(id);
}

/// Without a display a program ends at once, or runs unseen until it has found that out.
bool canShowWindows(platform::WindowSystem& windows) {
  try {
    static_cast<void>(windows.windows());
    return true;
  } catch (const platform::DesktopFailure& failure) {
    log.debug("{}", failure.errorDescription());
    return failure.kind() != platform::DesktopFault::noWindowSystem;
  }
}

bool start(const std::string& id, const DesktopServices& services, const platform::CallLimits& limits) {
  const auto application = findInstalled(id, services.installed);
  if (!application) {
    log.error("Application with bundle identifier '{}' not found", id);
    return false;
  }
  if (!canShowWindows(services.windows))
    return false;
  try {
    // Some programs join the accessibility bus only where it is on when they start, and asking it switches it on.
    static_cast<void>(services.accessibility.applications(limits));
  } catch (const platform::DesktopFailure& failure) {
    log.debug("{}", failure.errorDescription());
  }
  try {
    services.installed.start(*application);
    return true;
  } catch (const platform::DesktopFailure& failure) {
    log.error("Failed to launch application: {}", failure.errorDescription());
    return false;
  }
}

void activate(const RunningApplication& application, platform::WindowSystem& windowSystem,
              const platform::CallLimits& limits) {
  try {
    std::vector<platform::ClientWindow> windows = windowSystem.windows();
    std::erase_if(windows, [&](const platform::ClientWindow& each) { return each.pid != application.process; });
    // A window in sight is preferred to one that is minimized.
    const auto shown = std::ranges::find_if(windows, &platform::ClientWindow::isShown);
    if (!windows.empty())
      windowSystem.activate(shown != windows.end() ? shown->id : windows.front().id);
  } catch (const platform::DesktopFailure& failure) {
    platform::giveNotice(limits, platform::asCause(failure));
  }
}

platform::Task<void> sleep(platform::Clock& clock) {
  try {
    co_await clock.sleep(pause);
  } catch (const boost::system::system_error&) {
    log.debug("A wait for an application was cut short");
  }
}

} // namespace

platform::Task<std::optional<RunningApplication>> activateOrLaunch(std::string id, const DesktopServices& services,
                                                                   platform::CallLimits limits) {
  auto application = services.targets.findApplication(id);
  // The entry of that name has no program that could be started.
  if (id == engine::frontmostTargetContext().id && (!application || application->bundleIdentifier.empty()))
    co_return std::nullopt;
  if (!application) {
    if (!start(id, services, limits))
      co_return std::nullopt;
    for (std::chrono::milliseconds waited{}; !application && waited <= longestLaunch; waited += pause) {
      co_await sleep(services.clock);
      application = services.targets.findApplication(id);
    }
    if (!application)
      co_return std::nullopt;
  }
  activate(*application, services.windows, limits);
  co_return application;
}

engine::TargetContext withWholeID(engine::TargetContext target, const DesktopServices& services) {
  if (target.id.contains('.')) // as the frontmost browser's, too
    return target;
  if (const auto running = services.targets.findApplication(target.id))
    target.id = platform::lowercased(running->bundleIdentifier);
  else if (const auto application = findInstalled(target.id, services.installed))
    target.id = platform::lowercased(application->id);
  return target;
}

} // namespace tabwright::automation
