// Everything goes through the descriptor of the folder that was checked. Names begin with the time, so their order is
// that of age whatever happens to the files' own times. An unfinished file is held by its writer (session::hold), so
// what nobody holds may go.
#include "crashreport/ReportSpool.h"

#include "platform/FileFailure.h"
#include "platform/linux/BaseDirectories.h"
#include "platform/linux/FileDescriptor.h"
#include "session/UnheldFiles.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::crashreport {
namespace {

using platform::FileDescriptor;
using platform::FileFailure;

constexpr std::string_view unfinishedEnding = ".new";
constexpr std::size_t stampDigits = 16;
constexpr std::size_t idDigits = 32;
constexpr int attempts = 8;

session::TrustedFolder opened(const std::filesystem::path& folder) {
  platform::ensurePrivateFolder(folder.parent_path());
  try {
    session::TrustedFolder trusted(folder.string());
    if (::fchmod(trusted.descriptor(), S_IRWXU) != 0)
      throw FileFailure("use the folder", folder, errno);
    return trusted;
  } catch (const session::FolderRefused& refusal) {
    throw FileFailure("use the folder", folder, refusal.errorNumber());
  }
}

bool isReportName(std::string_view name, std::string_view ending) {
  if (name.size() != stampDigits + 1 + idDigits + ending.size() || !name.ends_with(ending) || name[stampDigits] != '-')
    return false;
  std::string digits(name.substr(0, name.size() - ending.size()));
  digits.erase(stampDigits, 1);
  return digits.find_first_not_of("0123456789abcdef") == std::string::npos;
}

/// The size of a file that may be a report.
std::optional<std::size_t> reportSize(const struct stat& facts) {
  const bool isReport = S_ISREG(facts.st_mode) && facts.st_uid == ::geteuid() && facts.st_size >= 0 &&
                        static_cast<std::size_t>(facts.st_size) <= ReportSpool::longestReport;
  return isReport ? std::optional(static_cast<std::size_t>(facts.st_size)) : std::nullopt;
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

void writeAll(int file, std::string_view text, const std::filesystem::path& path) {
  while (!text.empty()) {
    const ssize_t count = ::write(file, text.data(), text.size());
    if (count < 0 && errno != EINTR)
      throw FileFailure("write", path, errno);
    text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
}

} // namespace

std::filesystem::path ReportSpool::defaultFolder() {
  return platform::stateHome() / "tabwright" / "reports";
}

ReportSpool::ReportSpool(const std::filesystem::path& folder) : folder_(opened(folder)) {
  session::removeUnheldFiles(descriptor(), unfinishedEnding);
  session::removeUnheldFiles(descriptor(), pendingEnding);
  trim();
}

// Between its making and its holding a process that tidies may take the file away; then another is made.
FileDescriptor ReportSpool::makeHeldFile(const std::string& name) const {
  for (int attempt = 0; attempt < attempts; ++attempt) {
    FileDescriptor file(
        ::openat(descriptor(), name.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen())
      throw FileFailure("write", path() / name, errno);
    if (session::hold(file.number()) && session::isStillAt(descriptor(), name, file.number()))
      return file;
  }
  throw FileFailure("write", path() / name, EAGAIN);
}

void ReportSpool::add(std::string_view envelope) {
  const std::string name = newName(envelopeEnding);
  const std::filesystem::path file = path() / name;
  if (envelope.size() > longestReport)
    throw FileFailure("write", file, EFBIG);
  const std::string unfinished = name + std::string(unfinishedEnding);
  try {
    const FileDescriptor writing = makeHeldFile(unfinished);
    writeAll(writing.number(), envelope, file);
    if (::fsync(writing.number()) != 0 || ::renameat(descriptor(), unfinished.c_str(), descriptor(), name.c_str()) != 0)
      throw FileFailure("write", file, errno);
  } catch (const FileFailure&) {
    ::unlinkat(descriptor(), unfinished.c_str(), 0);
    throw;
  }
  ::fsync(descriptor()); // some file systems can't; the report is in its place all the same
  trim();
}

std::vector<std::string> ReportSpool::names(std::string_view ending) const {
  std::vector<std::string> found;
  const int own = ::openat(descriptor(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseFolder> folder(own < 0 ? nullptr : ::fdopendir(own));
  if (!folder) {
    if (own >= 0)
      ::close(own);
    return found;
  }
  while (const dirent* entry = ::readdir(folder.get())) {
    struct stat facts{};
    if (isReportName(entry->d_name, ending) &&
        ::fstatat(descriptor(), entry->d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 && reportSize(facts))
      found.emplace_back(entry->d_name);
  }
  std::ranges::sort(found);
  return found;
}

bool ReportSpool::hasReports() const {
  return !names(envelopeEnding).empty() || !names(crashEnding).empty();
}

std::optional<std::string> ReportSpool::read(const std::string& name) const {
  // O_NONBLOCK: opening a pipe must not wait for its other end.
  const FileDescriptor file(::openat(descriptor(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat facts{};
  if (!file.isOpen() || ::fstat(file.number(), &facts) != 0 || !reportSize(facts))
    return std::nullopt;
  return file.readAll(longestReport);
}

void ReportSpool::remove(const std::string& name) const noexcept {
  ::unlinkat(descriptor(), name.c_str(), 0);
}

void ReportSpool::trim() const {
  std::vector<std::string> all = names(envelopeEnding);
  for (std::string& crash : names(crashEnding))
    all.push_back(std::move(crash));
  std::ranges::sort(all, std::ranges::greater());
  std::size_t files = 0;
  std::size_t bytes = 0;
  for (const std::string& name : all) { // newest first
    struct stat facts{};
    if (::fstatat(descriptor(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
      continue;
    bytes += static_cast<std::size_t>(facts.st_size);
    if (++files > mostFiles || bytes > mostBytes)
      remove(name);
  }
}

std::string ReportSpool::newName(std::string_view ending) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto stamp = static_cast<std::uint64_t>(std::chrono::nanoseconds(now).count());
  return fmt::format("{:016x}-{}{}", stamp, newReportID(), ending);
}

std::string newReportID() {
  std::array<unsigned char, idDigits / 2> bytes{};
  static_cast<void>(::getrandom(bytes.data(), bytes.size(), 0)); // so few bytes come at once, and always
  // By RFC 9562 a random UUID says that it is one.
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
  std::string text;
  for (const unsigned char byte : bytes)
    text += fmt::format("{:02x}", byte);
  return text;
}

} // namespace tabwright::crashreport
