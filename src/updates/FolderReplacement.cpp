// Two renames: for the moment between them there is no folder of the name, and all of both is there under other names.
#include "updates/FolderReplacement.h"

#include "platform/FileFailure.h"
#include "updates/Installation.h"
#include "updates/UpdateFault.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::updates {

namespace fs = std::filesystem;
using platform::FileFailure;

int renamePath(const fs::path& from, const fs::path& to) {
  return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

namespace {

// A process that was killed could not remove what it had begun. Whoever holds the lock finds no other's work.
void removeAbandoned(const std::string& beginning) {
  std::error_code error;
  const fs::path folder = fs::path(beginning).parent_path();
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->path().string().starts_with(beginning))
      fs::remove_all(entry->path(), ignored);
  }
}

} // namespace

FolderReplacement::FolderReplacement(fs::path replaced, RenamePath rename)
    : replaced_(std::move(replaced)), rename_(std::move(rename)),
      lock_(::open(replaced_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!lock_.isOpen())
    throw FileFailure("open", replaced_, errno);
  if (::flock(lock_.number(), LOCK_EX | LOCK_NB) != 0)
    throw platform::failure(UpdateFault::busy);
  std::string name = replaced_.string() + ".new-";
  removeAbandoned(name);
  name += "XXXXXX";
  if (!::mkdtemp(name.data()))
    throw FileFailure("make the folder", name, errno);
  folder_ = name;
}

FolderReplacement::~FolderReplacement() {
  std::error_code ignored;
  if (!folder_.empty())
    fs::remove_all(folder_, ignored);
}

void FolderReplacement::requireOwnLeftover(const fs::path& old) const {
  std::error_code error;
  if (fs::symlink_status(old, error).type() != fs::file_type::not_found && !holdsProgram(old))
    throw FileFailure("keep the former program as", old, EEXIST);
}

void FolderReplacement::takePlace() {
  const fs::path old = replaced_.string() + replacedEnding;
  requireOwnLeftover(old);
  struct stat facts{};
  const platform::FileDescriptor opened(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.isOpen() || ::fstat(lock_.number(), &facts) != 0 ||
      ::fchmod(opened.number(), facts.st_mode & 0777U) != 0 || ::syncfs(opened.number()) != 0)
    throw FileFailure("write", folder_, errno);
  std::error_code error;
  fs::remove_all(old, error);
  if (error)
    throw FileFailure("remove", old, error.value());
  if (const int reason = rename_(replaced_, old))
    throw FileFailure("rename", replaced_, reason);
  if (const int reason = rename_(folder_, replaced_)) {
    if (const int worse = rename_(old, replaced_))
      throw FileFailure("rename back", old, worse);
    throw FileFailure("rename", folder_, reason);
  }
  folder_.clear();
}

} // namespace tabwright::updates
