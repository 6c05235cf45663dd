#include "applescript/values/Traversal.h"

#include "applescript/values/Errors.h"

namespace tabwright::applescript {

thread_local std::size_t Traversal::depth = 0;
thread_local std::size_t Traversal::steps = 0;

Traversal::Traversal() {
  if (depth == 0)
    steps = 0;
  if (depth >= deepest)
    throw errors::stackOverflow();
  if (++steps > mostSteps)
    throw errors::outOfMemory();
  ++depth;
}

} // namespace tabwright::applescript
