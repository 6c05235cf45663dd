#pragma once

#include <filesystem>
#include <string>

namespace tabwright::connect {

/// The parts of the helper that a browser is told of, as this copy of the program has them. All paths are absolute.
struct HelperParts {
  std::string identity;           ///< the extension's id, 32 letters
  std::string version;            ///< such as "1.4.0"
  std::string relayName;          ///< by which the helper asks the browser for the relay
  std::filesystem::path package;  ///< the signed extension
  std::filesystem::path unpacked; ///< the same as a folder, for those who load it by hand
  std::filesystem::path relay;    ///< the program that the browser starts for the helper

  /// The page of the browser's that has the helper's switches.
  [[nodiscard]] std::string settingsPage() const { return "chrome://extensions/?id=" + identity; }
};

/// Finds the parts of the copy whose full program is `program`: the relay beside it, the others beside it as well (in a
/// build), or in `share/tabwright` below the folder that it is installed in. Throws ConnectFault `incomplete` for the
/// first one that is missing.
///
///     findHelperParts("/usr/libexec/tabwright/tabwright-host").package // /usr/share/tabwright/tabwright-helper.crx
[[nodiscard]] HelperParts findHelperParts(const std::filesystem::path& program);

} // namespace tabwright::connect
