#pragma once

#include <utility>

namespace tabwright::applescript {

/// Sets a variable for as long as this lives, and puts the former value back however the block ends. The variable must
/// outlive it; of several on one variable the last one made must end first.
///
///     const Restored<Value> target(frame.target, window); // until the end of the block
template <class T>
class Restored {
public:
  Restored(T& variable, T value) : variable_(variable), former_(std::exchange(variable, std::move(value))) {}
  ~Restored() { variable_ = std::move(former_); }
  Restored(const Restored&) = delete;
  Restored& operator=(const Restored&) = delete;

private:
  T& variable_;
  T former_;
};

} // namespace tabwright::applescript
