// Symbolic links are made when all else is there: until then the folder holds none, so that no name can lead out of it
// by one. In the end each has to lead to something inside.
#include "updates/Archive.h"

#include "platform/FileFailure.h"
#include "updates/UpdateFault.h"

#include <fmt/core.h>

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <new>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::updates {
namespace {

namespace fs = std::filesystem;
using platform::failure;

constexpr std::size_t mostEntries = 20'000;
constexpr std::uint64_t mostBytes = std::uint64_t{2} << 30;

class Unpacking {
public:
  Unpacking(const platform::FileDescriptor& file, const fs::path& folder)
      : folder_(folder), archive_(archive_read_new(), archive_read_free) {
    if (!archive_)
      throw std::bad_alloc();
    archive_read_support_filter_gzip(archive_.get());
    archive_read_support_format_tar(archive_.get());
    constexpr std::size_t blockSize = 65536;
    if (::lseek(file.number(), 0, SEEK_SET) != 0)
      throw platform::FileFailure("read", "the download", errno);
    check(archive_read_open_fd(archive_.get(), file.number(), blockSize));
  }

  void unpackAll() {
    for (std::size_t count = 1;; ++count) {
      archive_entry* entry = nullptr;
      const int result = archive_read_next_header(archive_.get(), &entry);
      if (result == ARCHIVE_EOF)
        break;
      check(result);
      if (count > mostEntries)
        unsafe(fmt::format("it has more than {} entries", mostEntries));
      unpack(entry);
    }
    if (top_.empty())
      throw failure(UpdateFault::brokenArchive, "it is empty");
    for (const auto& [path, target] : links_)
      makeLink(path, target);
    for (const auto& [path, target] : links_)
      requireInside(path);
  }

private:
  [[noreturn]] static void unsafe(const std::string& what) { throw failure(UpdateFault::unsafeArchive, what); }

  void check(int result) {
    if (result == ARCHIVE_OK || result == ARCHIVE_WARN)
      return;
    const char* reason = archive_error_string(archive_.get());
    throw failure(UpdateFault::brokenArchive, reason ? reason : "it is no tar.gz");
  }

  // A name as it stands in the archive, below the one folder that holds everything; empty for that folder itself.
  fs::path ownPath(const char* name) {
    if (!name || !*name)
      unsafe("an entry has no name that can be read");
    const fs::path path(name);
    if (path.is_absolute())
      unsafe(fmt::format("“{}” is an absolute name", name));
    fs::path own;
    bool isTop = true;
    for (const fs::path& part : path) {
      if (part == "..")
        unsafe(fmt::format("“{}” leads out of it", name));
      if (part.empty() || part == ".")
        continue;
      if (std::exchange(isTop, false)) {
        if (!top_.empty() && part != top_)
          unsafe("it holds more than one folder");
        top_ = part;
      } else {
        own /= part;
      }
    }
    return own;
  }

  void unpack(archive_entry* entry) {
    const char* name = archive_entry_pathname(entry);
    const fs::path path = ownPath(name);
    const mode_t type = archive_entry_filetype(entry);
    if (path.empty()) {
      if (type != AE_IFDIR)
        unsafe(fmt::format("“{}” stands beside its folder", name));
      return;
    }
    if (const char* target = archive_entry_hardlink(entry)) {
      makeParent(path);
      const fs::path same = folder_ / ownPath(target);
      if (::link(same.c_str(), (folder_ / path).c_str()) != 0)
        refuse(path);
    } else if (type == AE_IFDIR) {
      makeParent(path / "x");
    } else if (type == AE_IFREG) {
      makeParent(path);
      writeFile(path, archive_entry_perm(entry));
    } else if (type == AE_IFLNK) {
      const char* leadsTo = archive_entry_symlink(entry);
      if (!leadsTo)
        unsafe(fmt::format("the link “{}” leads nowhere", name));
      makeParent(path);
      links_.emplace_back(path, leadsTo);
    } else {
      unsafe(fmt::format("“{}” is neither a file, a folder nor a link", name));
    }
  }

  // Two entries of one name, or a file where a folder is needed, are the archive's fault and not the system's.
  [[noreturn]] void refuse(const fs::path& path) const {
    const int error = errno;
    if (error == EEXIST || error == ENOTDIR || error == ENOENT || error == EISDIR)
      unsafe(fmt::format("“{}” does not fit the other entries", path.string()));
    throw platform::FileFailure("unpack", folder_ / path, error);
  }

  void makeParent(const fs::path& path) const {
    std::error_code error;
    fs::create_directories(folder_ / path.parent_path(), error);
    if (error) {
      errno = error.value();
      refuse(path);
    }
  }

  void writeFile(const fs::path& path, mode_t permissions) {
    const platform::FileDescriptor file(
        ::open((folder_ / path).c_str(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen())
      refuse(path);
    std::array<char, 65536> buffer{};
    for (;;) {
      const la_ssize_t count = archive_read_data(archive_.get(), buffer.data(), buffer.size());
      if (count == 0)
        break;
      if (count < 0)
        check(ARCHIVE_FATAL);
      bytes_ += static_cast<std::uint64_t>(count);
      if (bytes_ > mostBytes)
        unsafe(fmt::format("it unpacks to more than {} bytes", mostBytes));
      for (la_ssize_t done = 0; done < count;) {
        const ssize_t written = ::write(file.number(), buffer.data() + done, static_cast<std::size_t>(count - done));
        if (written < 0 && errno != EINTR)
          refuse(path);
        done += std::max<ssize_t>(written, 0);
      }
    }
    const mode_t allowed = S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH;
    if (::fchmod(file.number(), (permissions & allowed) | S_IRUSR | S_IWUSR) != 0)
      refuse(path);
  }

  void makeLink(const fs::path& path, const std::string& target) const {
    if (::symlink(target.c_str(), (folder_ / path).c_str()) != 0)
      refuse(path);
  }

  void requireInside(const fs::path& path) const {
    std::error_code error;
    const fs::path root = fs::canonical(folder_, error);
    const fs::path end = error ? fs::path() : fs::canonical(folder_ / path, error);
    const auto [rest, ignored] = std::mismatch(root.begin(), root.end(), end.begin(), end.end());
    if (error || rest != root.end())
      unsafe(fmt::format("the link “{}” leads out of it, or nowhere", path.string()));
  }

  const fs::path folder_;
  const std::unique_ptr<archive, int (*)(archive*)> archive_;
  fs::path top_;
  std::vector<std::pair<fs::path, std::string>> links_;
  std::uint64_t bytes_ = 0;
};

} // namespace

void unpackArchive(const platform::FileDescriptor& file, const fs::path& folder) {
  Unpacking(file, folder).unpackAll();
}

} // namespace tabwright::updates
