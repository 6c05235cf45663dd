#pragma once

#include "platform/linux/CurlLibrary.h"
#include "updates/UpdateFault.h"

namespace tabwright::updates {

/// The library that fetches. Throws `UpdateFault::unreachable` where it can't be loaded.
[[nodiscard]] inline const platform::CurlLibrary& requireCurl() {
  if (const platform::CurlLibrary* curl = platform::CurlLibrary::shared())
    return *curl;
  throw platform::failure(UpdateFault::unreachable, platform::CurlLibrary::whyMissing());
}

} // namespace tabwright::updates
