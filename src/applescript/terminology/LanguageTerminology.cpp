#include "applescript/terminology/Terminology.h"
#include "applescript/terminology/language/Constants.h"
#include "applescript/terminology/language/ScriptingAdditions.h"
#include "applescript/terminology/language/StandardSuite.h"
#include "applescript/terminology/language/ValueClasses.h"

#include <algorithm>
#include <array>
#include <cstddef>

// The language's dictionary is its tables joined into one, in the order in which equal words are preferred.
namespace tabwright::applescript {

namespace {

template <std::size_t... sizes>
constexpr auto joined(const std::array<Term, sizes>&... tables) {
  std::array<Term, (sizes + ...)> rows{};
  auto out = rows.begin();
  ((out = std::ranges::copy(tables, out).out), ...);
  return rows;
}

constexpr auto languageRows =
    joined(language::valueClasses, language::valueProperties, language::standardClasses, language::standardProperties,
           language::standardCommands, language::scriptingAdditions, language::constants);

} // namespace

const Terminology& languageTerminology() {
  static const Terminology terminology("AppleScript", languageRows);
  return terminology;
}

} // namespace tabwright::applescript
