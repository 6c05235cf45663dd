#pragma once

#include "platform/StringCatalogue.h"

#include <span>

namespace tabwright::platform {

/// The catalogue files under `resources/strings/`, as they were when the program was built. The build writes the
/// definition; its texts live as long as the process.
[[nodiscard]] std::span<const StringCatalogue::Source> embeddedStringCatalogues();

} // namespace tabwright::platform
