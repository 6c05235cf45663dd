#include "applescript/evaluate/StackGuard.h"

#include <algorithm>
#include <pthread.h>

namespace tabwright::applescript {

StackGuard::StackGuard() {
  const auto here = reinterpret_cast<std::size_t>(__builtin_frame_address(0));
  // Unless the system tells better, a stack is taken to have a megabyte left.
  limit_ = here - std::min<std::size_t>(here, 1u << 20) + reserve;
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    return;
  void* lowest = nullptr;
  std::size_t size = 0;
  if (pthread_attr_getstack(&attributes, &lowest, &size) == 0 && size > 0) {
    // The main thread's stack may be told as unlimited; no run needs more than this.
    constexpr std::size_t mostUsed = 64u << 20;
    const auto lowestAddress = reinterpret_cast<std::size_t>(lowest);
    limit_ = std::max(lowestAddress, here - std::min(here, mostUsed)) + reserve;
  }
  pthread_attr_destroy(&attributes);
}

} // namespace tabwright::applescript
