#pragma once

#include <string>
#include <string_view>

namespace tabwright::shell {

/// The system of the machine and its version's three numbers: "Linux 6.1.0".
[[nodiscard]] std::string operatingSystem();

/// The words that a report of a fault should have of its surroundings: the program's release, the system, and the
/// browsers' versions as `UserDefaultsManager::browserVersionList` has them.
[[nodiscard]] std::string environmentSummary(std::string_view system, std::string_view browserVersions);

} // namespace tabwright::shell
