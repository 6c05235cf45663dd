#pragma once

#include <utility>

namespace tabwright::applescript {

/// Sets a variable for as long as this lives, and puts the former value back however the block ends.
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
