#include "platform/linux/RunningBrowsers.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <pwd.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

// Each numbered directory is looked at in the order of cost: the executable's name sorts out nearly all of them, then
// the owner, then the command line. A process may vanish between two reads; whatever cannot be read then is not
// running.

namespace tabwright::platform {

namespace {

namespace fs = std::filesystem;

std::optional<std::string> readAll(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in)
    return std::nullopt;
  std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  return in.bad() ? std::nullopt : std::optional(std::move(text));
}

std::vector<std::string> splitAtNulls(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::string executableName(const fs::path& process) {
  std::error_code error;
  std::string target = fs::read_symlink(process / "exe", error).string();
  // A browser goes on running after its package was upgraded under it.
  constexpr std::string_view deleted = " (deleted)";
  if (target.ends_with(deleted))
    target.resize(target.size() - deleted.size());
  return fs::path(target).filename().string();
}

/// Field 22 of stat, counted behind the command's name, which may hold blanks and parentheses itself.
std::optional<std::uint64_t> startTime(const fs::path& process) {
  const std::optional<std::string> text = readAll(process / "stat");
  if (!text)
    return std::nullopt;
  std::size_t place = text->rfind(')');
  if (place == std::string::npos)
    return std::nullopt;
  place += 2;
  for (int field = 3; field < 22; ++field) {
    place = text->find(' ', place);
    if (place == std::string::npos)
      return std::nullopt;
    ++place;
  }
  std::uint64_t ticks = 0;
  const auto [end, error] = std::from_chars(text->data() + place, text->data() + text->size(), ticks);
  return error == std::errc{} ? std::optional(ticks) : std::nullopt;
}

/// Chromium rewrites the command lines of its helper processes into one text, with blanks between the arguments.
bool isHelperProcess(const std::vector<std::string>& arguments) {
  if (arguments.size() == 1)
    return arguments[0].find(" --type=") != std::string::npos;
  return std::ranges::any_of(arguments, [](const std::string& argument) { return argument.starts_with("--type="); });
}

/// The value of `--name=value` or `--name value`; as in the browser, the last one counts, and none after a bare `--`.
std::optional<std::string> switchValue(const std::vector<std::string>& arguments, const std::string& name) {
  std::optional<std::string> value;
  for (std::size_t index = 1; index < arguments.size() && arguments[index] != "--"; ++index) {
    if (arguments[index].starts_with(name + "="))
      value = arguments[index].substr(name.size() + 1);
    else if (arguments[index] == name && index + 1 < arguments.size() && !arguments[index + 1].starts_with("--"))
      value = arguments[index + 1];
  }
  if (value && value->empty())
    value.reset();
  return value;
}

bool hasSwitch(const std::vector<std::string>& arguments, const std::string& name) {
  return std::ranges::any_of(
      arguments, [&](const std::string& argument) { return argument == name || argument.starts_with(name + "="); });
}

std::string variable(const std::vector<std::string>& environment, const std::string& name) {
  for (const std::string& entry : environment) {
    if (entry.starts_with(name + "="))
      return entry.substr(name.size() + 1);
  }
  return {};
}

std::string homeOf(uid_t owner) {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(owner, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
    return {};
  return found->pw_dir;
}

/// The lock in a profile that is in use is a symbolic link to "HOST-PID".
bool isLockedBy(const fs::path& profile, const std::string& process) {
  std::error_code error;
  return fs::read_symlink(profile / "SingletonLock", error).string().ends_with("-" + process);
}

fs::path defaultProfile(const BrowserFacts& facts, const fs::path& process, uid_t owner) {
  const std::vector<std::string> environment = splitAtNulls(readAll(process / "environ").value_or(""));
  std::string home = variable(environment, "HOME");
  if (home.empty())
    home = homeOf(owner);
  const std::string configuration = variable(environment, "XDG_CONFIG_HOME");

  std::vector<fs::path> candidates;
  for (const std::string_view directory : facts.profileDirectories) {
    constexpr std::string_view usual = ".config/";
    if (!configuration.empty() && directory.starts_with(usual))
      candidates.push_back(fs::path(configuration) / directory.substr(usual.size()));
    candidates.push_back(fs::path(home) / directory);
  }
  for (const fs::path& candidate : candidates) {
    if (isLockedBy(candidate, process.filename().string()))
      return candidate;
  }
  std::error_code error;
  for (const fs::path& candidate : candidates) {
    if (fs::is_directory(candidate, error))
      return candidate;
  }
  return candidates.empty() ? fs::path() : candidates.front();
}

std::optional<RunningBrowser> look(const fs::path& process, const BrowserFacts& facts) {
  const std::string name = executableName(process);
  if (name.empty() || std::ranges::find(facts.processNames, name) == facts.processNames.end())
    return std::nullopt;

  struct stat status{};
  if (::stat(process.c_str(), &status) != 0 || (status.st_uid != geteuid() && geteuid() != 0))
    return std::nullopt;

  const std::optional<std::string> commandLine = readAll(process / "cmdline");
  if (!commandLine || commandLine->empty())
    return std::nullopt;
  const std::vector<std::string> arguments = splitAtNulls(*commandLine);
  if (isHelperProcess(arguments))
    return std::nullopt;

  const std::optional<std::uint64_t> start = startTime(process);
  if (!start)
    return std::nullopt;

  RunningBrowser browser;
  browser.process = static_cast<pid_t>(std::stol(process.filename().string()));
  browser.owner = status.st_uid;
  browser.startTime = *start;
  browser.isHeadless = hasSwitch(arguments, "--headless");
  if (const auto directory = switchValue(arguments, "--user-data-dir")) {
    std::error_code error;
    browser.profileDirectory = fs::read_symlink(process / "cwd", error) / *directory;
  } else {
    browser.profileDirectory = defaultProfile(facts, process, status.st_uid);
  }
  return browser;
}

} // namespace

RunningBrowsers::RunningBrowsers(fs::path processes) : processes_(std::move(processes)) {}

std::vector<RunningBrowser> RunningBrowsers::find(const BrowserFacts& facts) const {
  std::vector<RunningBrowser> browsers;
  if (facts.processNames.empty())
    return browsers;
  std::error_code error;
  for (fs::directory_iterator entry(processes_, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    const bool isNumber = name.size() <= 9 && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber)
      continue;
    if (std::optional<RunningBrowser> browser = look(entry->path(), facts))
      browsers.push_back(std::move(*browser));
  }
  // Process numbers break ties between starts within one tick.
  std::ranges::sort(browsers, [](const RunningBrowser& left, const RunningBrowser& right) {
    return std::pair(left.startTime, left.process) > std::pair(right.startTime, right.process);
  });
  return browsers;
}

} // namespace tabwright::platform
