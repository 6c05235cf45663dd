#pragma once

#include <string_view>

namespace tabwright::engine {

/// Keeps the version of a browser that a script has told.
class BrowserVersionStore {
public:
  virtual ~BrowserVersionStore() = default;

  /// Called after each successful script of an action, from the thread that runs it; several may run at once. An id
  /// that the store doesn't know is ignored. Must not throw.
  virtual void setBrowserVersion(std::string_view id, std::string_view version) = 0;
};

} // namespace tabwright::engine
