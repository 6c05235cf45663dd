#pragma once

#include "platform/BrowserTable.h"

namespace tabwright::targets {

/// What is asked of the machine about browsers. Safe to use from any thread; what can't be found out counts as no.
class BrowserProbe {
public:
  virtual ~BrowserProbe() = default;

  /// Whether the browser can be started here.
  [[nodiscard]] virtual bool isInstalled(const platform::BrowserFacts& browser) const = 0;
  /// Whether at least one process of the browser serves this user at this moment.
  [[nodiscard]] virtual bool isRunning(const platform::BrowserFacts& browser) const = 0;
};

} // namespace tabwright::targets
