#include "shell/Varn.h"

#include "platform/Logger.h"
#include "shell/Application.h"
#include "shell/WindowText.h"

#include <fmt/core.h>

#include <algorithm>
#include <unistd.h>
#include <vector>

namespace tabwright::shell {

std::string_view Varn::App::version() {
  return TABWRIGHT_VERSION;
}

std::string_view Varn::App::build() {
  return TABWRIGHT_BUILD;
}

std::string Varn::App::release() {
  return fmt::format("{} ({})", version(), build());
}

std::string_view Varn::App::updateFeed() {
  return TABWRIGHT_FEED_URL;
}

std::string_view Varn::App::updateKey() {
  return TABWRIGHT_FEED_KEY;
}

std::string Varn::App::identificationLine() {
  return fmt::format("{} / {} / PID: {}", bundleIdentifier, release(), getpid());
}

Window* Varn::Windows::mainWindow(const Application& application) {
  for (Window* window : application.windows()) {
    if (window->identifier() == mainWindowIdentifier)
      return window;
  }
  return nullptr;
}

void Varn::Windows::showMainWindow(const Application& application) {
  if (Window* window = mainWindow(application))
    window->makeKeyAndOrderFront();
}

void Varn::Windows::showOnboardingWindow(Application& application, const std::optional<std::string>& title) {
  Window* window = application.onboardingWindow();
  if (window) {
    if (!window->isVisible())
      window->renewContent();
    window->makeKeyAndOrderFront();
    return;
  }
  window = application.makeOnboardingWindow();
  if (!window) {
    platform::Logger("Varn-Helpers").error("Couldn't create onboarding window");
    return;
  }
  window->renewContent();
  window->setTitle(title.value_or(windowText("setup.title", {App::name})));
  window->makeKeyAndOrderFront();
  window->center();
}

void Varn::Windows::cleanUp(Application& application) {
  application.setAllowsAutomaticWindowTabbing(false);
  const Window* main = mainWindow(application);
  for (Window* window : application.windows()) {
    const std::vector<Window*> left = application.windows(); // one that is closed may take others with it
    if (window != main && std::ranges::find(left, window) != left.end())
      window->close();
  }
}

std::string_view nameOf(Varn::App::CurrentBuild build) {
  switch (build) {
  case Varn::App::CurrentBuild::Preview:
    return "Preview";
  case Varn::App::CurrentBuild::Development:
    return "Development";
  case Varn::App::CurrentBuild::Beta:
    return "Beta";
  case Varn::App::CurrentBuild::Production:
    return "Production";
  }
  return {};
}

} // namespace tabwright::shell
