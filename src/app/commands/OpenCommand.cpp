// The windows are a program of their own, so that no command has to load what draws them. It stands beside this one.
#include "app/BrowserLauncher.h"
#include "app/commands/Commands.h"
#include "intents/UsageError.h"
#include "platform/FileFailure.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/X11WindowSystem.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tabwright::app {
namespace {

constexpr const char* windowsProgram = "tabwright-desktop";

} // namespace

ExitCode open() {
  std::error_code error;
  const std::filesystem::path program =
      std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / windowsProgram;
  if (!std::filesystem::exists(program, error))
    throw intents::UsageError("Tabwright’s windows aren’t installed. They are a package of their own: “apt install "
                              "tabwright-desktop”. Everything else works without them.");
  if (!hasDesktop())
    throw intents::UsageError("There is no desktop for Tabwright’s windows: neither DISPLAY nor WAYLAND_DISPLAY is "
                              "set. “tabwright” alone tells how things are, and “tabwright help” what it can do.");
  const char* display = std::getenv("DISPLAY");
  if (display && *display)
    static_cast<void>(platform::X11WindowSystem().windows()); // throws where nobody serves that display
  if (const int failure = platform::startDetached({program.string()}, {}); failure != 0)
    throw platform::FileFailure("start", program, failure);
  return ExitCode::done;
}

} // namespace tabwright::app
