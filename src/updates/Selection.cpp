// A program is bound to the C library that it was built for, or a later one, whatever the distribution is called: so it
// is what "system" means here.
#include "updates/Selection.h"

#include "updates/Version.h"

#include <algorithm>
#include <gnu/libc-version.h>

namespace tabwright::updates {
namespace {

bool isForBuild(const AppcastItem& item, const RunningBuild& build) {
  const bool isOfChannel =
      item.channel.empty() || std::ranges::find(build.channels, item.channel) != build.channels.end();
  const bool isForSystem =
      !item.isForOtherSystems &&
      (item.minimumSystemVersion.empty() || compareVersions(item.minimumSystemVersion, build.systemVersion) <= 0);
  return isOfChannel && isForSystem && compareVersions(item.version, build.version) > 0;
}

} // namespace

std::optional<AppcastItem> bestUpdate(const Appcast& appcast, const RunningBuild& build) {
  const AppcastItem* best = nullptr;
  for (const AppcastItem& item : appcast) {
    if (isForBuild(item, build) && (!best || compareVersions(item.version, best->version) > 0))
      best = &item;
  }
  return best ? std::optional(*best) : std::nullopt;
}

std::string systemVersion() {
  return ::gnu_get_libc_version();
}

} // namespace tabwright::updates
