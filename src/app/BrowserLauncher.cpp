#include "app/BrowserLauncher.h"

#include "app/BrowserReach.h"
#include "devtools/Connection.h"
#include "devtools/Discovery.h"
#include "devtools/Targets.h"
#include "intents/UsageError.h"
#include "platform/DesktopFault.h"
#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/Sleep.h"
#include "platform/linux/ArgumentVector.h"
#include "platform/linux/AtspiAccessibility.h"
#include "platform/linux/BaseDirectories.h"
#include "platform/linux/BrowserExecutable.h"
#include "platform/linux/FileDescriptor.h"
#include "session/TrustedFolder.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

// The browser is spawned, and from then on looked for as any running browser is: by its profile in the process table,
// and by the port that it writes into the profile. So what this reports as ready is what a later command will find. Its
// own word on standard error would be sooner, but is not there for a browser that ran already: a second start with the
// same profile hands its address over to the first and ends, and the first is the one to wait for.

namespace tabwright::app {
namespace {

using platform::RunningBrowser;

/// Switches whose value is a program that the browser starts, or the words before it.
constexpr std::string_view programSwitches[]{"browser-subprocess-path", "gpu-launcher",          "nacl-gdb",
                                             "plugin-launcher",         "ppapi-plugin-launcher", "renderer-cmd-prefix",
                                             "utility-cmd-prefix",      "zygote-cmd-prefix"};

constexpr std::chrono::milliseconds patienceWithRunning{2000};
constexpr std::uintmax_t roomForProfile = 16 << 20; // a new one takes 12 MB

constexpr std::string_view blanks = " \t\n\v\f\r"; // which browsers take away around a word

bool isSwitch(std::string_view word) {
  const std::size_t start = word.find_first_not_of(blanks);
  return start != std::string_view::npos && word[start] == '-';
}

// Chromium takes one dash as well as two, and ends the name at “=”.
std::string_view switchName(std::string_view word) {
  const std::size_t start = word.find_first_not_of(" \t\n\v\f\r-");
  if (start == std::string_view::npos)
    return {};
  word.remove_prefix(start);
  return word.substr(0, word.find_first_of("= \t\n\v\f\r"));
}

void requireHarmless(const BrowserLaunch& launch) {
  // The address is the last word of the command line, and nothing there would keep the browser from reading it as a
  // switch.
  if (isSwitch(launch.address))
    throw intents::UsageError(
        fmt::format("“{}” is no address: it begins as a switch does. Switches for the browser stand "
                    "behind “--”.",
                    launch.address));
  for (const std::string& word : launch.switches) {
    const std::string_view name = switchName(word);
    if (isSwitch(word) && std::ranges::find(programSwitches, name) != std::end(programSwitches))
      throw intents::UsageError(
          fmt::format("The switch --{} makes the browser run a program: it can’t be passed on. Start "
                      "the browser yourself, with --remote-debugging-port=0, if you need it.",
                      name));
  }
}

/// A browser joins the accessibility bus only where that is on when it starts, and asking the bus switches it on.
/// Without one everything but the browser's own menus can be reached all the same.
void switchAccessibilityOn() {
  try {
    constexpr std::chrono::seconds patience{2};
    static_cast<void>(platform::AtspiAccessibility().applications(platform::CallLimits{}.within(patience)));
  } catch (const platform::DesktopFailure& failure) {
    platform::Logger("Browser").debug("{}", failure.errorDescription());
  }
}

std::optional<RunningBrowser> findRunning(const BrowserLaunch& launch) {
  for (const RunningBrowser& browser : platform::RunningBrowsers().find(*launch.facts)) {
    // The process table has the path as the browser was given it, perhaps through a link.
    std::error_code error;
    if (browser.profileDirectory == launch.profileDirectory ||
        std::filesystem::equivalent(browser.profileDirectory, launch.profileDirectory, error))
      return browser;
  }
  return std::nullopt;
}

std::vector<std::string> commandLineOf(const BrowserLaunch& launch, const std::filesystem::path& executable) {
  // Port 0: the browser takes a free one, and writes it into the profile. No other browser can be in the way.
  std::vector<std::string> words{executable.string(), "--user-data-dir=" + launch.profileDirectory.string(),
                                 "--remote-debugging-port=0", "--no-first-run", "--no-default-browser-check"};
  if (launch.isHeadless)
    words.insert(words.end(), {"--headless=new", "--disable-gpu"});
  if (::geteuid() == 0)
    words.emplace_back("--no-sandbox"); // the browser's sandbox refuses to work for root
  words.insert(words.end(), launch.switches.begin(), launch.switches.end());
  if (!launch.address.empty())
    words.push_back(launch.address);
  return words;
}

// The file for what the browser says; nowhere, when it can't be written.
platform::FileDescriptor openLog(const std::filesystem::path& logFile) {
  try {
    platform::ensurePrivateFolder(logFile.parent_path());
    platform::FileDescriptor log(::open(logFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (log.isOpen())
      return log;
    throw platform::FileFailure("write", logFile, errno);
  } catch (const platform::FileFailure& failure) {
    platform::Logger("Browser").error("{}", failure.errorDescription());
  }
  return platform::FileDescriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC));
}

pid_t spawnDetached(const std::vector<std::string>& words, const std::filesystem::path& logFile) {
  const platform::FileDescriptor log = openLog(logFile);
  std::vector<char*> arguments = platform::argumentVector(words);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&files, log.number(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  // A mask outlives a spawn: the browser would never see the signals that this process holds back.
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  // A session of its own, so that the terminal's Ctrl-C and its end are for this program alone.
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);

  pid_t process = 0;
  const int error = ::posix_spawn(&process, arguments.front(), &files, &attributes, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  posix_spawnattr_destroy(&attributes);
  if (error != 0)
    throw platform::FileFailure("start", words.front(), error);
  return process;
}

bool accepts(const RunningBrowser& browser) {
  return devtools::Discovery().endpoint(browser.profileDirectory, browser.process, browser.owner).has_value();
}

/// The address as a browser takes one from its command line, spelt out: a file that is there, or a host without scheme.
std::string fullAddress(const std::string& address) {
  std::error_code error;
  if (std::filesystem::exists(address, error))
    return "file://" + std::filesystem::absolute(address).string();
  const bool hasScheme =
      address.find("://") != std::string::npos || address.starts_with("about:") || address.starts_with("data:");
  return hasScheme ? address : "http://" + address;
}

/// A second start hands its address to a browser with windows, but not to one without.
void openInHeadless(const RunningBrowser& browser, const BrowserLaunch& launch, const std::stop_token& stop) {
  const auto endpoint = devtools::Discovery().endpoint(browser.profileDirectory, browser.process, browser.owner);
  if (!endpoint)
    throw NoBrowser(endpoint.error().detail);
  platform::CallLimits limits{.stop = stop};
  limits = limits.within(patienceWithRunning);
  try {
    const auto connection = devtools::Connection::open(*endpoint, limits);
    static_cast<void>(devtools::createTarget(*connection, {{"url", fullAddress(launch.address)}}, limits));
  } catch (const platform::Failure& failure) {
    throw NoBrowser(fmt::format("{} runs already, but didn’t open {}: {}", launch.facts->name, launch.address,
                                failure.errorDescription()));
  }
}

// A browser whose disk is full starts, and then waits for ever.
void requireRoom(const BrowserLaunch& launch) {
  if (!session::hasRoom(launch.profileDirectory.string(), roomForProfile))
    throw NoBrowser(fmt::format("The disk with the profile {} is full: {} needs some {} MB there. Make room, and start "
                                "it again.",
                                launch.profileDirectory.string(), launch.facts->name, roomForProfile >> 20));
}

} // namespace

BrowserLaunch launchWithOwnProfile(const platform::BrowserFacts& facts) {
  return {.facts = &facts,
          .profileDirectory = platform::dataHome() / "tabwright" / "browsers" / facts.shortName,
          .isHeadless = false,
          .address = {},
          .switches = {}};
}

std::filesystem::path logFileOf(const platform::BrowserFacts& facts) {
  return platform::stateHome() / "tabwright" / fmt::format("browser-{}.log", facts.shortName);
}

bool hasDesktop() {
  const auto isSet = [](const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
  };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

void requireDesktop(const platform::BrowserFacts& facts) {
  if (!hasDesktop())
    throw NoBrowser(
        fmt::format("There is no desktop for {}’s windows: neither DISPLAY nor WAYLAND_DISPLAY is set. Start "
                    "it without a window: tabwright browser {} --headless",
                    facts.name, facts.shortName));
}

LaunchedBrowser launchBrowser(const BrowserLaunch& launch, const std::filesystem::path& logFile,
                              std::chrono::seconds patience, const std::stop_token& stop) {
  requireHarmless(launch);
  const std::optional<std::filesystem::path> executable = platform::findExecutable(*launch.facts);
  if (!executable)
    throw NoBrowser(fmt::format("{} isn’t installed: none of its programs is on the PATH.", launch.facts->name));
  platform::ensurePrivateFolder(launch.profileDirectory);

  const std::optional<RunningBrowser> before = findRunning(launch);
  if (before && portReachOf(*before, patienceWithRunning).kind == BrowserReach::Kind::silent)
    throw NoBrowser(fmt::format("{} already runs with the profile {}, but answers nothing: it is frozen, or very busy. "
                                "Look at its windows, or end it (process {}) and start it again.",
                                launch.facts->name, launch.profileDirectory.string(), before->process));
  if (before && (before->isHeadless || launch.address.empty()) && accepts(*before)) {
    if (!launch.address.empty())
      openInHeadless(*before, launch, stop);
    return {.process = before->process, .wasRunning = true};
  }
  if (!before) {
    requireRoom(launch);
    std::error_code ignored; // the port of an earlier run would only be in the way
    std::filesystem::remove(launch.profileDirectory / "DevToolsActivePort", ignored);
  }

  if (!launch.isHeadless)
    switchAccessibilityOn();
  const pid_t spawned = spawnDetached(commandLineOf(launch, *executable), logFile);
  bool hasEnded = false;
  const auto deadline = std::chrono::steady_clock::now() + patience;
  for (;;) {
    int status = 0;
    if (!hasEnded && ::waitpid(spawned, &status, WNOHANG) == spawned) {
      hasEnded = true;
      if (!before)
        throw NoBrowser(fmt::format("{} ended right after its start. What it said is in {}.", launch.facts->name,
                                    logFile.string()));
    }
    // A second start with the same profile hands its address over to the first and ends.
    const std::optional<RunningBrowser> running = findRunning(launch);
    if (running && accepts(*running) && (!before || hasEnded)) {
      if (!hasEnded) // it is this process's child, and its end has to be collected, whenever that is
        std::thread([spawned] { ::waitpid(spawned, nullptr, 0); }).detach();
      return {.process = running->process, .wasRunning = before.has_value()};
    }
    const bool isLate = std::chrono::steady_clock::now() >= deadline;
    if (!platform::sleepUnlessStopped(std::chrono::milliseconds(20), stop) || isLate) {
      // Also a second start that hasn't handed its address over yet: it must not open it later.
      if (!hasEnded)
        ::kill(spawned, SIGTERM);
      throw NoBrowser(before
                          ? fmt::format("{} already runs with the profile {}, but without remote debugging. Quit it, "
                                        "and start it again with “tabwright browser {}”.",
                                        launch.facts->name, launch.profileDirectory.string(), launch.facts->shortName)
                          : fmt::format("{} didn’t accept a connection within {} seconds. What it said is in {}.",
                                        launch.facts->name, patience.count(), logFile.string()));
    }
  }
}

} // namespace tabwright::app
