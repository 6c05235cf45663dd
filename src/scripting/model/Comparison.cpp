#include "scripting/model/Comparison.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Comparison.h"
#include "applescript/values/TextComparison.h"

namespace tabwright::scripting {

using applescript::TestOperator;
using applescript::Value;

bool sameIgnoringCase(std::string_view left, std::string_view right) {
  return applescript::textEquals(left, right, {});
}

bool compare(TestOperator comparison, const Value& left, const Value& right, TextCase textCase) {
  const applescript::TextAttributes attributes{.considersCase = textCase == TextCase::considered};
  try {
    return applescript::compare(comparison, left, right, attributes);
  } catch (const applescript::ScriptError& error) {
    // One tab without what is compared, such as a title, must not end a search through all of them.
    if (error.number() != applescript::errorNumber::cannotMake)
      throw;
    return false;
  }
}

} // namespace tabwright::scripting
