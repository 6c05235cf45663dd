#pragma once

#include "updates/Appcast.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::updates {

/// The build that runs, as far as updates have to do with it.
struct RunningBuild {
  std::string version;               ///< in the form of the feed's `version`, with the number of the build
  std::string programVersion;        ///< as the program itself tells it, by "--version"
  std::string shownVersion;          ///< in words for users
  std::vector<std::string> channels; ///< that it takes updates of, beside those for everybody
  std::string systemVersion;         ///< of the C library
};

/// The newest item that is newer than the build, of its channels and for its system; the first of equal ones.
[[nodiscard]] std::optional<AppcastItem> bestUpdate(const Appcast& appcast, const RunningBuild& build);

/// The version of the C library of this system, such as "2.36".
[[nodiscard]] std::string systemVersion();

} // namespace tabwright::updates
