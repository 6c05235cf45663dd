#pragma once

#include "platform/BrowserTable.h"
#include "platform/Failure.h"
#include "platform/linux/RunningBrowsers.h"

#include <chrono>
#include <filesystem>
#include <stop_token>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::app {

/// The order to start a browser. `facts` is a row of the browser table that has executables.
struct BrowserLaunch {
  const platform::BrowserFacts* facts = nullptr;
  std::filesystem::path profileDirectory; ///< made with mode 0700 when it isn't there
  bool isHeadless = false;
  std::string address;               ///< empty: the browser's own start page
  std::vector<std::string> switches; ///< passed on as they are
};

/// The browser that serves the profile: the main process, never a start that only handed its address over.
struct LaunchedBrowser {
  pid_t process = 0;
  bool wasRunning = false; ///< it ran with that profile already, and has only opened the address
};

/// No browser could be started, or it doesn't let itself be driven. The sentence says what to do.
class NoBrowser final : public platform::Failure {
public:
  /// `sentence` is whole, for the user; the exit code is that of a browser that can't be reached.
  explicit NoBrowser(std::string sentence) : sentence_(std::move(sentence)) {}
  [[nodiscard]] std::string errorDescription() const override { return sentence_; }
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"NoBrowser", "notStarted", {}, platform::FailureClass::unreachable};
  }

private:
  std::string sentence_;
};

/// A browser with the profile that this program keeps for it, apart from the user's own.
[[nodiscard]] BrowserLaunch launchWithOwnProfile(const platform::BrowserFacts& facts);
/// The file that such a browser's output goes to.
[[nodiscard]] std::filesystem::path logFileOf(const platform::BrowserFacts& facts);
/// True where there is a desktop that can show windows.
[[nodiscard]] bool hasDesktop();
/// Throws NoBrowser where there is no desktop that could show the browser's windows.
void requireDesktop(const platform::BrowserFacts& facts);
/// The time that a first start may take; on a slow machine it takes more than ten seconds.
inline constexpr std::chrono::seconds startPatience{60};

/// Starts a browser in a session of its own, with remote debugging on and its output in `logFile`, and returns when it
/// accepts connections. The browser outlives this process. One that runs with that profile already is only handed the
/// address, and left alone when there is none. Blocks: `runInterruptibly` gives the stop token.
///
///     const LaunchedBrowser launched = launchBrowser({.facts = findBrowser("chromium"), .profileDirectory = folder},
///                                                    logFile, std::chrono::seconds(60), stop);
///
/// Throws `UsageError` for an address that the browser would take for a switch, and for a switch that makes it run
/// another program: whoever passes on words of others, such as an address behind "--", is not to run what they name.
/// A log file that can't be written is done without. Throws NoBrowser when it isn't installed, has no room for its
/// profile, ends at once, or accepts nothing within `patience`; it is not left running
/// then. A requested stop ends the wait likewise.
[[nodiscard]] LaunchedBrowser launchBrowser(const BrowserLaunch& launch, const std::filesystem::path& logFile,
                                            std::chrono::seconds patience, const std::stop_token& stop);

} // namespace tabwright::app
