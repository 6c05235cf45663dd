#pragma once

#include "support/ScratchFolder.h"

#include <filesystem>
#include <map>
#include <string>

namespace tabwright::testsupport {

/// The environment of a user with nothing yet, below a folder: the hosts that run there are seen by no other test.
/// Makes the folder for sockets.
[[nodiscard]] inline std::map<std::string, std::string> hostSurroundings(const ScratchFolder& folder) {
  std::filesystem::create_directory(folder / "run");
  std::filesystem::permissions(folder / "run", std::filesystem::perms::owner_all);
  return {{"XDG_RUNTIME_DIR", folder / "run"},
          {"XDG_CONFIG_HOME", folder / "config"},
          {"XDG_DATA_HOME", folder / "data"},
          {"XDG_STATE_HOME", folder / "state"},
          {"LC_ALL", "C.UTF-8"},
          {"LANGUAGE", ""}};
}

} // namespace tabwright::testsupport
