#include "applescript/evaluate/RunBudget.h"

#include "applescript/values/Errors.h"

#include <algorithm>

namespace tabwright::applescript {

void RunBudget::require() const {
  if (isSpent())
    throw errors::userCancelled();
}

void RunBudget::checkpoint() {
  // A stop is looked for this often only, so that a step costs no more than a decrement.
  constexpr std::size_t stepsBetweenCheckpoints = 256;
  std::size_t chunk = stepsBetweenCheckpoints;
  // The last chunk is shorter, so that the limit is met at the step.
  if (limit_ != 0) {
    const std::size_t left = limit_ - std::min(limit_, taken_);
    isUsedUp_ = left == 0;
    chunk = std::clamp<std::size_t>(left, 1, chunk);
  }
  untilCheckpoint_ = chunk;
  require();
  taken_ += chunk;
}

} // namespace tabwright::applescript
