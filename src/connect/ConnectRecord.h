#pragma once

#include "platform/linux/FileLock.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::connect {

/// The list of the folders that the helper was installed in, kept so that everything can be removed again: a browser
/// may be started with any folder, and leaves no word of it. Locked against other processes as long as this lives.
///
/// A folder is noted before anything is written in it, so nothing is forgotten when the process is killed.
class ConnectRecord {
public:
  struct Entry {
    std::string browser;                     ///< its id
    std::filesystem::path directory;         ///< a user data directory
    std::vector<std::filesystem::path> made; ///< the folders that were made for the helper, outer ones first
  };

  /// Reads the list; a missing file is an empty one. Makes the folder that it lies in. Throws FileFailure, also when
  /// another process has it for longer than five seconds, and ConnectFault `damagedRecord` for a file of another form,
  /// which stays as it is.
  explicit ConnectRecord(std::filesystem::path file);

  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  /// Adds the folder, and to those that were made in it; saved when this returns. Throws ConnectFault `unwritable`.
  void note(std::string_view browser, const std::filesystem::path& directory,
            const std::vector<std::filesystem::path>& made);
  /// Takes the folder off the list, saved likewise. The file goes with its last entry.
  void forget(const std::filesystem::path& directory);

  /// The file of this user's.
  [[nodiscard]] static std::filesystem::path usualFile();

private:
  void save() const;

  const std::filesystem::path file_;
  const platform::FileLock lock_;
  std::vector<Entry> entries_;
};

} // namespace tabwright::connect
