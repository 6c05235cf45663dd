#pragma once

#include <filesystem>

namespace tabwright::app {

/// The folder on disk with the helper that goes into a browser, as this executable carries it.
///
/// A browser loads the helper from files, so the embedded ones are written once to `helper/HASH` in the data
/// directory and found there from then on; another build of this program has a folder of its own. Where that directory
/// can't be written they lie in the session's folder. Safe when several processes do it at once. Throws `FileFailure`
/// when neither can be written.
[[nodiscard]] std::filesystem::path ensureHelperFiles();

} // namespace tabwright::app
