#include "shell/Varn.h"

#include "shell/Application.h"

#include <fmt/core.h>

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

void Varn::Windows::cleanUp(Application& application) {
  application.setAllowsAutomaticWindowTabbing(false);
  const Window* main = mainWindow(application);
  for (Window* window : application.windows()) {
    if (window != main)
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
