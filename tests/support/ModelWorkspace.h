#pragma once

#include "automation/DesktopServices.h"
#include "platform/Appearance.h"
#include "platform/DesktopFault.h"
#include "platform/Pointer.h"
#include "support/ManualClock.h"
#include "support/ModelAccessibility.h"
#include "support/ModelBrowserProbe.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// A desktop in memory for what finds, starts and operates applications: windows, keys, installed applications. What
/// was done is written down.
class ModelWorkspace : public platform::WindowSystem,
                       public platform::Keyboard,
                       public platform::Pointer,
                       public platform::Appearance,
                       public platform::InstalledApplications,
                       public automation::BrowserControls {
public:
  /// With a machine of its own, or with that of others. References outlive this.
  ModelWorkspace() : probe(ownProbe_), targets(ownTargets_) {}
  ModelWorkspace(ModelBrowserProbe& probe, targets::TargetContextManager& targets) : probe(probe), targets(targets) {}

private:
  ModelBrowserProbe ownProbe_{{}, {}};
  targets::TargetContextManager ownTargets_{ownProbe_};

public:
  ModelAccessibility accessibility;
  ManualClock clock;
  ModelBrowserProbe& probe;
  targets::TargetContextManager& targets;
  std::vector<platform::ClientWindow> all; ///< front to back; the first one that is shown is active
  std::vector<platform::InstalledApplication> known;
  std::vector<std::string> deeds;          ///< such as "activate 7", "key ff1b", "start Editor", "controls of Chromium"
  std::function<void()> onWindows = [] {}; ///< may throw as a window system does
  std::function<void()> onStart = [] {};
  std::function<void()> onKey = [] {};
  automation::DesktopServices services{accessibility, *this, *this, *this, clock, targets, *this};

  /// Adds an application behind the others, with one window of the same number.
  targets::RunningApplication run(pid_t process, std::string id, std::string name) {
    targets::RunningApplication application{std::move(id), std::move(name), process, probe.otherRunning.empty()};
    probe.otherRunning.push_back(application);
    platform::ClientWindow window;
    window.id = static_cast<std::uint32_t>(process);
    window.pid = process;
    window.isShown = true;
    window.isActive = all.empty();
    all.push_back(window);
    return application;
  }

  std::vector<platform::ClientWindow> windows() override {
    onWindows();
    return all;
  }
  void activate(std::uint32_t window) override {
    deeds.push_back(fmt::format("activate {}", window));
    for (platform::ClientWindow& each : all)
      each.isActive = each.id == window;
  }
  void minimise(const std::vector<std::uint32_t>&) override {}
  void restore(const std::vector<std::uint32_t>&) override {}
  void place(std::uint32_t, const platform::Rectangle&) override {}
  void setFullScreen(std::uint32_t, bool) override {}
  void close(std::uint32_t) override {}

  void click(int, int) override {}
  bool isDark() override { return false; }
  void setDark(bool) override {}

  void press(const platform::Key& key, const platform::KeyModifiers& modifiers, const platform::CallLimits&) override {
    deeds.push_back(fmt::format("key {:x}{}", key.symbol, named(modifiers)));
    onKey();
  }
  void type(const std::string& text, const platform::KeyModifiers& modifiers, const platform::CallLimits&) override {
    deeds.push_back("type " + text + named(modifiers));
  }
  void hold(const platform::KeyModifiers&) override {}
  void release(const platform::KeyModifiers&) override {}

  std::optional<platform::InstalledApplication> find(std::string_view id) override {
    const auto found = std::ranges::find(known, id, &platform::InstalledApplication::id);
    return found != known.end() ? std::optional(*found) : std::nullopt;
  }
  std::optional<platform::InstalledApplication> applicationOf(const platform::ClientWindow&) override { return {}; }
  void start(const platform::InstalledApplication& application) override {
    deeds.push_back("start " + application.name);
    onStart();
  }

  static std::string named(const platform::KeyModifiers& modifiers) {
    return fmt::format("{}{}{}{}", modifiers.shift ? " shift" : "", modifiers.control ? " control" : "",
                       modifiers.alt ? " alt" : "", modifiers.super ? " super" : "");
  }

  void show(const targets::RunningApplication& browser, const platform::CallLimits&) override {
    deeds.push_back("controls of " + browser.localizedName);
  }
};

} // namespace tabwright::testsupport
