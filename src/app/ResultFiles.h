#pragma once

#include "host/Perform.h"

#include <filesystem>

namespace tabwright::app {

/// Writes the files that a result holds into `folder`, which is made if need be, and puts in their places what tells
/// where they are: {"filename": …, "type": …, "path": …} instead of their data. A name that is taken there gets a
/// number: "selection 2.rtfd"; nothing is overwritten. A later command takes the result, too, without the file's
/// content.
///
/// Throws `platform::FileFailure` with the path and the reason; files written before stay.
[[nodiscard]] host::ActionResult withFilesIn(const std::filesystem::path& folder, host::ActionResult result);

} // namespace tabwright::app
