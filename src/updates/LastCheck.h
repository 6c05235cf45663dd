#pragma once

#include <filesystem>

namespace tabwright::updates {

/// When the feed was last looked at, in a file, so that it is not asked at each start. Times are in seconds since
/// 2001-01-01 00:00:00 UTC. A file that can't be read or written is as if there were none: the worst that comes of it
/// is one more look.
class LastCheck {
public:
  explicit LastCheck(std::filesystem::path file);

  /// The seconds from `now` until a day has passed since the last look: 0 to 86,400. One in the future doesn't count.
  [[nodiscard]] double secondsUntilNext(double now) const;
  void note(double now) const;

private:
  std::filesystem::path file_;
};

} // namespace tabwright::updates
