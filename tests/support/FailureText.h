#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::testsupport {

/// The sentence of the failure that `work` ends in; "no failure" when it doesn't.
template <class Work>
std::string failureText(Work work) {
  try {
    static_cast<void>(work());
  } catch (const platform::Failure& failure) {
    return failure.errorDescription();
  }
  return "no failure";
}

} // namespace tabwright::testsupport
