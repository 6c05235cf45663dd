#pragma once

#include <filesystem>

namespace tabwright::platform {

/// The user's base directories after the XDG Base Directory rules: the value of XDG_CONFIG_HOME, XDG_DATA_HOME and
/// XDG_STATE_HOME where it is an absolute path, else `.config`, `.local/share` and `.local/state` in the home
/// directory. Read from the environment at each call. The folders needn't exist.
///
///     configHome() / "tabwright" / "settings.plist"
[[nodiscard]] std::filesystem::path configHome();
[[nodiscard]] std::filesystem::path dataHome();
[[nodiscard]] std::filesystem::path stateHome();

/// Makes the folder and those above it that are missing, open to their owner alone. Throws `FileFailure`. One that is
/// there already is taken as it is, whoever else may look into it. The empty path is none to make.
void ensurePrivateFolder(const std::filesystem::path& folder);

} // namespace tabwright::platform
