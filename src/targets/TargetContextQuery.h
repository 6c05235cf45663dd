#pragma once

#include "targets/TargetContextManager.h"

#include <span>
#include <string>
#include <vector>

namespace tabwright::targets {

/// Finds targets by their ids, as when a saved action names a browser.
///
///     TargetContextQuery(manager).entities(std::vector<std::string>{"org.chromium.chromium"})
class TargetContextQuery {
public:
  /// `manager` outlives the query.
  explicit TargetContextQuery(const TargetContextManager& manager) : manager_(manager) {}

  /// All values of all sections whose id is among `ids`, in section order: a browser that is installed and runs comes
  /// twice. An id that is in none gives nothing. Case counts: ids of targets stand in lower case. Each call looks for
  /// what runs.
  [[nodiscard]] std::vector<TargetContext> entities(std::span<const std::string> ids) const;

private:
  const TargetContextManager& manager_;
};

} // namespace tabwright::targets
