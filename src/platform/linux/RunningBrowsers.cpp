// Each numbered directory is looked at in the order of cost: the executable's name sorts out nearly all of them at one
// system call each, then the command line, then the rest. Names are taken relative to the open directory, and read
// into buffers on the stack: a desktop has hundreds of processes, and this is asked for by every action. A process may
// vanish between two reads; whatever cannot be read then is not running. When it is this process
// that has run short, of descriptors say, nothing is known, and that is a failure.
#include "platform/linux/RunningBrowsers.h"

#include "platform/FileFailure.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ProcessStat.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <pwd.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {

namespace {

namespace fs = std::filesystem;

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

/// One process: the directory that all of them are in, and its name there.
struct ProcessFiles {
  const fs::path& path;
  int directory;
  std::string name;

  [[nodiscard]] std::string fileName(std::string_view file) const { return name + '/' + std::string(file); }
};

std::optional<std::string> readAll(const ProcessFiles& process, std::string_view file) {
  const FileDescriptor opened(::openat(process.directory, process.fileName(file).c_str(), O_RDONLY | O_CLOEXEC));
  if (!opened.isOpen() && isShortage(errno))
    throw FileFailure("read", process.path / process.fileName(file), errno);
  return opened.readAll();
}

/// The path to which a symbolic link of a process leads; empty when that can't be read.
std::string linkOf(int directory, const std::string& name) {
  char buffer[4096];
  const ssize_t size = ::readlinkat(directory, name.c_str(), buffer, sizeof buffer);
  return size > 0 ? std::string(buffer, static_cast<std::size_t>(size)) : std::string();
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

std::string programOf(int directory, const std::string& process) {
  std::string target = linkOf(directory, process + "/exe");
  // A browser goes on running after its package was upgraded under it.
  constexpr std::string_view deleted = " (deleted)";
  if (target.ends_with(deleted))
    target.resize(target.size() - deleted.size());
  return target;
}

std::optional<std::uint64_t> startTime(const ProcessFiles& process) {
  const std::optional<std::string> text = readAll(process, "stat");
  const std::optional<std::int64_t> ticks = text ? fieldOfStat(*text, StatField::startTime) : std::nullopt;
  return ticks ? std::optional(static_cast<std::uint64_t>(*ticks)) : std::nullopt;
}

/// The arguments of a command line. Chromium rewrites those of its helper processes, and on a desktop its own, into one
/// text with blanks between the arguments, so blanks in a value can't be told from its end: there a value goes on to
/// the next switch. Addresses come last, behind all switches.
std::vector<std::string> argumentsOf(const std::string& commandLine) {
  std::vector<std::string> arguments = splitAtNulls(commandLine);
  // Several: nobody has rewritten them.
  if (arguments.size() != 1)
    return arguments;
  const std::string joined = std::exchange(arguments.front(), {});
  constexpr std::string_view nextSwitch = " --";
  std::size_t end = std::min(joined.find(nextSwitch), joined.size());
  arguments.front() = joined.substr(0, end);
  while (end < joined.size()) {
    const std::size_t begin = end + 1;
    end = std::min(joined.find(nextSwitch, begin), joined.size());
    arguments.push_back(joined.substr(begin, end - begin));
  }
  return arguments;
}

bool isHelperProcess(const std::vector<std::string>& arguments) {
  return std::ranges::any_of(arguments, [](const std::string& argument) { return argument.starts_with("--type="); });
}

/// The directory that a switch names. Where addresses stand behind the value of a command line in one text, it is the
/// longest beginning that is a directory.
fs::path directoryOf(const fs::path& base, const std::string& value) {
  std::error_code error;
  for (std::string shorter = value;; shorter.resize(shorter.rfind(' '))) {
    if (fs::is_directory(base / shorter, error))
      return base / shorter;
    if (shorter.find(' ') == std::string::npos)
      return base / value;
  }
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

/// The fallback where the process' environment has no HOME: Chromium writes over it.
std::string homeOf(uid_t owner) {
  if (const char* home = std::getenv("HOME"); home && *home == '/' && owner == ::geteuid())
    return home;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(owner, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
    return {};
  return found->pw_dir;
}

/// The last number of the line "NSpid:" in status, which has one for each sandbox around the process.
pid_t innerNumber(const ProcessFiles& process, pid_t outer) {
  const std::string status = readAll(process, "status").value_or("");
  constexpr std::string_view key = "\nNSpid:";
  const std::size_t start = status.find(key);
  if (start == std::string::npos)
    return outer;
  const std::string_view line = std::string_view(status).substr(start + key.size());
  const std::string_view numbers = line.substr(0, line.find('\n'));
  const std::string_view last = numbers.substr(numbers.find_last_of(" \t") + 1);
  pid_t number = 0;
  const auto [end, error] = std::from_chars(last.data(), last.data() + last.size(), number);
  return error == std::errc{} ? number : outer;
}

/// The lock in a profile that is in use is a symbolic link to "HOST-PID".
bool isLockedBy(const fs::path& profile, pid_t process) {
  std::error_code error;
  return fs::read_symlink(profile / "SingletonLock", error).string().ends_with("-" + std::to_string(process));
}

fs::path defaultProfile(const RunningBrowser& browser, const ProcessFiles& process) {
  const std::vector<std::string> environment = splitAtNulls(readAll(process, "environ").value_or(""));
  std::string home = variable(environment, "HOME");
  std::string configuration = variable(environment, "XDG_CONFIG_HOME");
  if (home.empty()) {
    home = homeOf(browser.owner);
    // The value that was written over is most likely the one of this process.
    if (const char* own = std::getenv("XDG_CONFIG_HOME"); own && *own == '/' && browser.owner == ::geteuid())
      configuration = own;
  }

  std::vector<fs::path> candidates;
  for (const std::string_view directory : browser.facts->profileDirectories) {
    constexpr std::string_view usual = ".config/";
    if (!configuration.empty() && directory.starts_with(usual))
      candidates.push_back(fs::path(configuration) / directory.substr(usual.size()));
    candidates.push_back(fs::path(home) / directory);
  }
  for (const fs::path& candidate : candidates) {
    // A browser may be installed twice, and the lock tells which profile is this process'.
    if (isLockedBy(candidate, browser.innerProcess))
      return candidate;
  }
  std::error_code error;
  for (const fs::path& candidate : candidates) {
    if (fs::is_directory(candidate, error))
      return candidate;
  }
  return candidates.empty() ? fs::path() : candidates.front();
}

std::optional<RunningBrowser> look(const ProcessFiles& process, const BrowserFacts* wanted) {
  const BrowserFacts* facts = findBrowserOfProgram(programOf(process.directory, process.name));
  if (!facts || (wanted && facts != wanted))
    return std::nullopt;

  const std::optional<std::string> commandLine = readAll(process, "cmdline");
  // Empty for a process that has ended and isn't collected yet.
  if (!commandLine || commandLine->empty())
    return std::nullopt;
  const std::vector<std::string> arguments = argumentsOf(*commandLine);
  if (isHelperProcess(arguments))
    return std::nullopt;

  struct stat status{};
  if (::fstatat(process.directory, process.name.c_str(), &status, 0) != 0 ||
      (status.st_uid != ::geteuid() && ::geteuid() != 0))
    return std::nullopt;
  const std::optional<std::uint64_t> start = startTime(process);
  if (!start)
    return std::nullopt;

  RunningBrowser browser;
  browser.facts = facts;
  browser.process = static_cast<pid_t>(std::stol(process.name));
  browser.innerProcess = innerNumber(process, browser.process);
  browser.owner = status.st_uid;
  browser.startTime = *start;
  browser.isHeadless = hasSwitch(arguments, "--headless");
  // A relative one counts from the browser's own working directory.
  if (const auto directory = switchValue(arguments, "--user-data-dir"))
    browser.profileDirectory = directoryOf(linkOf(process.directory, process.fileName("cwd")), *directory);
  else
    browser.profileDirectory = defaultProfile(browser, process);
  return browser;
}

/// Those of one kind, or of all.
std::vector<RunningBrowser> search(const fs::path& processes, const BrowserFacts* wanted) {
  std::vector<RunningBrowser> browsers;
  const Directory directory(::opendir(processes.c_str()));
  if (!directory)
    throw FileFailure("read", processes, errno);
  while (const dirent* entry = ::readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    // Nine digits are more than the kernel gives a process.
    const bool isNumber = name.size() <= 9 && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber)
      continue;
    if (auto browser = look({processes, ::dirfd(directory.get()), std::string(name)}, wanted))
      browsers.push_back(std::move(*browser));
  }
  // Process numbers break ties between starts within one tick.
  std::ranges::sort(browsers, [](const RunningBrowser& left, const RunningBrowser& right) {
    return std::pair(left.startTime, left.process) > std::pair(right.startTime, right.process);
  });
  return browsers;
}

} // namespace

RunningBrowsers::RunningBrowsers(fs::path processes) : processes_(std::move(processes)) {}

std::vector<RunningBrowser> RunningBrowsers::find(const BrowserFacts& facts) const {
  return facts.programs.empty() ? std::vector<RunningBrowser>{} : search(processes_, &facts);
}

std::vector<RunningBrowser> RunningBrowsers::findAll() const {
  return search(processes_, nullptr);
}

fs::path RunningBrowsers::programOf(pid_t process) const {
  return platform::programOf(AT_FDCWD, (processes_ / std::to_string(process)).string());
}

} // namespace tabwright::platform
