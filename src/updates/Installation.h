#pragma once

#include "platform/CallLimits.h"

#include <filesystem>
#include <string>

namespace tabwright::updates {

/// The way in which a copy of the program came to where it lies, which says who updates it.
struct Installation {
  enum class Kind {
    package, ///< by a package manager, which updates it
    archive, ///< unpacked in a folder of its own, which this program can replace
    other,   ///< otherwise, such as from a build
  };
  Kind kind = Kind::other;
  std::string command;          ///< that updates a package
  std::filesystem::path folder; ///< of an archive: it holds bin/, libexec/ and more
  std::string obstacle;         ///< a sentence: why this copy can't be replaced, where it is no package
};

/// Looks at a copy by the path of its full program, `…/libexec/tabwright/tabwright-host`. A package manager that knows
/// that file has put it there. A folder of its own is one whose name begins with "tabwright" and that holds no more
/// than what archives hold: so nothing of the user's, and no prefix such as /usr/local, is ever moved. One whose name
/// ends in
/// ".old" has been replaced already.
///
/// Blocks while package managers are asked, until the deadline at most; the ones that don't answer count as not
/// knowing. Throws nothing.
[[nodiscard]] Installation findInstallation(const std::filesystem::path& program, const platform::CallLimits& limits);

/// The program of this process; empty where the system doesn't tell.
[[nodiscard]] std::filesystem::path ownProgram();

/// True for a folder with the programs in their places.
[[nodiscard]] bool holdsProgram(const std::filesystem::path& folder);

/// The places of the client and the full program in such a folder.
inline constexpr const char* clientPath = "bin/tabwright";
inline constexpr const char* hostPath = "libexec/tabwright/tabwright-host";
/// Follows the name of a folder that was replaced.
inline constexpr const char* replacedEnding = ".old";

} // namespace tabwright::updates
