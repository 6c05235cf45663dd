#include "applescript/values/Traversal.h"

#include "applescript/values/Errors.h"

namespace tabwright::applescript {

thread_local std::size_t Traversal::depth = 0;
thread_local std::size_t Traversal::steps = 0;

Traversal::Traversal() {
  // The outermost walk of the thread begins the count anew.
  if (depth == 0)
    steps = 0;
  if (depth >= deepest)
    throw errors::stackOverflow();
  if (++steps > mostSteps)
    throw errors::outOfMemory();
  // Last, since no destructor takes it back when the constructor throws.
  ++depth;
}

} // namespace tabwright::applescript
