#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>

namespace tabwright::updates {

/// Unpacks a tar.gz into a folder that is there, empty, and nobody else's. The archive holds one folder; what is in it
/// comes to lie in `folder` itself. Files keep their permissions, but for set-user-id and the like.
///
/// Throws `UpdateFault::brokenArchive` for what can't be read to its end, `unsafeArchive` for an entry that would lie
/// outside (an absolute name, a "..", a link that leads out or nowhere), is neither file, folder nor link, stands there
/// twice, or goes beyond 20,000 entries or 2 GiB; `FileFailure` where something can't be written. What had been
/// unpacked by then remains for the caller to remove.
void unpackArchive(const platform::FileDescriptor& file, const std::filesystem::path& folder);

} // namespace tabwright::updates
