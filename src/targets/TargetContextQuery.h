#pragma once

#include "targets/TargetContextManager.h"

#include <span>
#include <string>
#include <vector>

namespace tabwright::targets {

/// Finds targets by their ids, as when a saved action names a browser.
class TargetContextQuery {
public:
  /// `manager` outlives the query.
  explicit TargetContextQuery(const TargetContextManager& manager) : manager_(manager) {}

  /// All values of all sections whose id is among `ids`, in section order: a browser that is installed and runs comes
  /// twice. An id that is in none gives nothing.
  [[nodiscard]] std::vector<TargetContext> entities(std::span<const std::string> ids) const;

private:
  const TargetContextManager& manager_;
};

} // namespace tabwright::targets
