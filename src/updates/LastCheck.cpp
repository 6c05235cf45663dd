#include "updates/LastCheck.h"

#include "platform/Failure.h"
#include "platform/linux/BaseDirectories.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace tabwright::updates {

namespace {

constexpr double secondsBetweenChecks = 24.0 * 60 * 60;

} // namespace

LastCheck::LastCheck(std::filesystem::path file) : file_(std::move(file)) {}

double LastCheck::secondsUntilNext(double now) const {
  std::ifstream stream(file_);
  double last = 0;
  if (!(stream >> last) || last > now)
    return 0;
  return std::max(0.0, last + secondsBetweenChecks - now);
}

void LastCheck::note(double now) const {
  try {
    platform::ensurePrivateFolder(file_.parent_path());
  } catch (const platform::Failure&) {
    return;
  }
  std::ofstream(file_) << std::fixed << now << '\n';
}

} // namespace tabwright::updates
