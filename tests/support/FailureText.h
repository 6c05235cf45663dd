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

/// Its type and case, such as "ScriptacularError.malformedScript".
template <class Work>
std::string failureName(Work work) {
  try {
    static_cast<void>(work());
  } catch (const platform::Failure& failure) {
    return failure.identity().type + "." + failure.identity().caseName;
  }
  return "no failure";
}

} // namespace tabwright::testsupport
