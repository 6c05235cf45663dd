#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tabwright::connect {

/// One profile of a browser, as its user knows it.
struct BrowserProfile {
  std::string directory; ///< its folder in the user data directory, such as "Default"
  std::string name;      ///< given by the user, such as "Work"
  /// The user has removed the helper in it by hand. The browser doesn't take it in again by itself then.
  bool isHelperRemoved = false;
};

/// The profiles in a user data directory, in the order of their folders, as the browser has written them down last.
/// Empty where it has never been started, or its files can't be read. `helper` is the extension's id.
[[nodiscard]] std::vector<BrowserProfile> readProfiles(const std::filesystem::path& userData,
                                                       const std::string& helper);

/// The folder of the profile in whose storage the helper keeps `mark`, the name that it gave the profile; empty where
/// none has it. A mark may reach the disk a moment after the helper has told it, and a new profile is in the browser's
/// list later still.
[[nodiscard]] std::string findProfileOfHelper(const std::filesystem::path& userData, const std::string& helper,
                                              const std::string& mark);

} // namespace tabwright::connect
