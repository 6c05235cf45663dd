#include "updates/Appcast.h"
#include "updates/UpdateFault.h"
#include "updates/Version.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

/// Any bytes are a feed or a failure of one kind, and versions have an order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tabwright::updates;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    for (const AppcastItem& item : readAppcast(text)) {
      if (!isVersion(item.version) || compareVersions(item.version, item.version) != 0)
        std::abort();
    }
  } catch (const UpdateFailure& failure) {
    if (failure.kind() != UpdateFault::malformedFeed)
      std::abort();
  }
  const std::string_view half = text.substr(0, size / 2);
  if ((compareVersions(text, half) < 0) != (compareVersions(half, text) > 0))
    std::abort();
  return 0;
}
