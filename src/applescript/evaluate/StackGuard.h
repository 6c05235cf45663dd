#pragma once

#include <cstddef>

namespace tabwright::applescript {

/// Knows how much stack the current thread has left, so that recursion can end in an error before the stack does. Works
/// for stacks well above `reserve`, and for at most 64 MB of one.
class StackGuard {
public:
  /// Guards the thread it is made on, which alone may ask it.
  StackGuard();

  /// Less than `reserve` bytes are left. Costs a comparison: the limit is found out once.
  [[nodiscard]] bool isExhausted() const { return reinterpret_cast<std::size_t>(__builtin_frame_address(0)) < limit_; }

  /// Room for whatever is called without looking: application objects, Unicode functions, walks over nested values.
  static constexpr std::size_t reserve = 768u << 10;

private:
  std::size_t limit_ = 0;
};

} // namespace tabwright::applescript
