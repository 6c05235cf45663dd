#pragma once

#include "scripting/systemevents/Desktop.h"
#include "support/ModelAccessibility.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// A desktop in memory: the first visible process is frontmost. Menus are by path; what was done is written down.
class ModelDesktop final : public scripting::Desktop, public scripting::DesktopElements {
public:
  std::vector<scripting::DesktopProcess> all; ///< front to back
  std::map<std::vector<std::size_t>, std::vector<scripting::MenuEntry>> menus;
  ModelAccessibility elementsOfAll;
  bool dark = false;
  std::function<void()> onLook = [] {};   ///< called before someone looks at the processes
  std::function<void()> onChoose = [] {}; ///< called when a menu item has been chosen
  std::vector<std::string> calls;         ///< such as "activate 12", "choose 12 1/3", "type x command shift"

  /// Adds a process behind the others.
  void add(pid_t pid, std::string name, std::string bundleIdentifier,
           const std::vector<std::string>& windowNames = {}) {
    scripting::DesktopProcess process;
    process.pid = pid;
    process.name = std::move(name);
    process.bundleIdentifier = std::move(bundleIdentifier);
    process.isVisible = true;
    for (const std::string& windowName : windowNames)
      process.windows.push_back({.id = static_cast<std::uint32_t>(1000 + process.windows.size()), .name = windowName});
    all.push_back(std::move(process));
  }

  std::vector<scripting::DesktopProcess> processes() override {
    onLook();
    std::vector<scripting::DesktopProcess> now = all;
    const auto front = std::ranges::find_if(now, &scripting::DesktopProcess::isVisible);
    if (front != now.end())
      front->isFrontmost = true;
    return now;
  }

  std::optional<scripting::DesktopProcess> frontmost() override {
    const std::vector<scripting::DesktopProcess> now = processes();
    const auto front = std::ranges::find_if(now, &scripting::DesktopProcess::isFrontmost);
    return front != now.end() ? std::optional(*front) : std::nullopt;
  }

  void activate(pid_t pid) override {
    calls.push_back(fmt::format("activate {}", pid));
    const auto process = std::ranges::find(all, pid, &scripting::DesktopProcess::pid);
    process->isVisible = true;
    std::rotate(all.begin(), process, process + 1);
  }

  void setVisible(pid_t pid, scripting::Visibility visibility) override {
    const bool isShown = visibility == scripting::Visibility::shown;
    calls.push_back(fmt::format("{} {}", isShown ? "show" : "hide", pid));
    std::ranges::find(all, pid, &scripting::DesktopProcess::pid)->isVisible = isShown;
  }

  std::vector<scripting::MenuEntry> menuEntries(const scripting::DesktopProcess&, scripting::MenuPath path,
                                                const platform::CallLimits&) override {
    const auto found = menus.find({path.begin(), path.end()});
    return found != menus.end() ? found->second : std::vector<scripting::MenuEntry>{};
  }

  void chooseMenuItem(const scripting::DesktopProcess& process, scripting::MenuPath path,
                      const platform::CallLimits&) override {
    std::string text = fmt::format("choose {} ", process.pid);
    for (std::size_t position = 0; position < path.size(); ++position)
      text += fmt::format("{}{}", position == 0 ? "" : "/", path[position]);
    calls.push_back(text);
    onChoose();
  }

  scripting::DesktopElements& elements() override { return *this; }
  platform::AccessibleElement application(const scripting::DesktopProcess& process,
                                          const platform::CallLimits& limits) override {
    const auto root = elementsOfAll.findApplication(process.pid, limits);
    if (!root)
      throw platform::failure(platform::DesktopFault::notShown, process.name);
    return *root;
  }
  platform::Accessibility& accessibility() override { return elementsOfAll; }

  void raise(std::uint32_t window) override { calls.push_back(fmt::format("raise {}", window)); }
  void setShown(std::uint32_t window, scripting::Visibility visibility) override {
    calls.push_back(fmt::format("{} window {}", visibility == scripting::Visibility::shown ? "show" : "hide", window));
  }
  void place(std::uint32_t window, const platform::Rectangle& place) override {
    calls.push_back(fmt::format("place {} {},{} {}x{}", window, place.x, place.y, place.width, place.height));
    for (scripting::DesktopProcess& process : all) {
      for (scripting::DesktopWindow& each : process.windows)
        each.place = each.id == window ? place : each.place;
    }
  }
  void setFullScreen(std::uint32_t window, bool isFullScreen) override {
    calls.push_back(fmt::format("full screen {} {}", window, isFullScreen));
  }
  void close(std::uint32_t window) override { calls.push_back(fmt::format("close {}", window)); }
  void clickAt(int x, int y) override { calls.push_back(fmt::format("click {},{}", x, y)); }
  bool isDark() override { return dark; }
  void setDark(bool isDark) override { dark = isDark; }

  void keystroke(const std::string& text, std::span<const scripting::ModifierKey> keys,
                 const platform::CallLimits&) override {
    calls.push_back("type " + text + named(keys));
  }
  void keyCode(int code, std::span<const scripting::ModifierKey> keys, const platform::CallLimits&) override {
    calls.push_back(fmt::format("key {}{}", code, named(keys)));
  }
  void modifiers(scripting::KeyTransition transition, std::span<const scripting::ModifierKey> keys) override {
    calls.push_back((transition == scripting::KeyTransition::down ? "down" : "up") + named(keys));
  }

private:
  static std::string named(std::span<const scripting::ModifierKey> keys) {
    std::string text;
    for (const scripting::ModifierKey key : keys)
      text += std::string(" ") + (key == scripting::ModifierKey::command   ? "command"
                                  : key == scripting::ModifierKey::option  ? "option"
                                  : key == scripting::ModifierKey::control ? "control"
                                                                           : "shift");
    return text;
  }
};

} // namespace tabwright::testsupport
