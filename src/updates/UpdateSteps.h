#pragma once

#include "platform/CallLimits.h"
#include "updates/FolderReplacement.h"
#include "updates/Installation.h"
#include "updates/Selection.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tabwright::updates {

/// All that looking for updates and installing one have to know.
struct UpdateFacts {
  std::string feed; ///< its address; empty: this build looks for none
  std::string key;  ///< the public key in base64 that archives are signed by
  RunningBuild build;
  std::filesystem::path program; ///< the full program of the copy that is to be updated
};

/// The findings of a check.
struct UpdateCheck {
  std::optional<AppcastItem> update; ///< nothing: this build is the newest
  Installation installation;
};

/// Looks at the feed, and at how this copy was installed. Blocks, for half a minute at most. Throws `UpdateFailure`. An
/// update whose archive lies at an address that isn't secure, is a failure too.
[[nodiscard]] UpdateCheck checkForUpdate(const UpdateFacts& facts, const platform::CallLimits& limits);

/// Puts an update that a check has found in place of this copy: fetches its archive, checks the signature, unpacks it
/// beside this copy, tries whether it starts here and is no older than this build, and renames the folders. Blocks, for
/// ten minutes at most. Yields the folder in which the former copy is kept. Throws `UpdateFailure` or `FileFailure`,
/// and this copy is what it was. Requires a check's item: newer than this build.
std::filesystem::path installUpdate(const UpdateFacts& facts, const UpdateCheck& check,
                                    const platform::CallLimits& limits, const RenamePath& rename = renamePath);

/// The way in which this copy is updated when not by this program: a sentence with the command, or the reason; empty
/// when it is.
[[nodiscard]] std::string adviceOn(const Installation& installation);

} // namespace tabwright::updates
