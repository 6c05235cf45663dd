// A scan from one backslash to the next: an escape is looked at only where it begins, so an escaped backslash before a
// "u" is never taken for the begin of \u. The text is repaired rather than the parsed value, since the parser refuses
// it.
#include "devtools/WireText.h"

#include "platform/JSONFailure.h"
#include "platform/JSONText.h"

#include <algorithm>

namespace tabwright::devtools {

namespace {

enum class Half { none, leading, trailing };

/// The kind of the escape at `place`: \uD800–\uDBFF leads a pair, \uDC00–\uDFFF trails one.
Half halfAt(std::string_view json, std::size_t place) {
  if (json.substr(place, 2) != "\\u" || place + 6 > json.size() || (json[place + 2] | 0x20) != 'd')
    return Half::none;
  const std::string_view digit = json.substr(place + 3, 1);
  if (digit.find_first_of("89abAB") == 0)
    return Half::leading;
  return digit.find_first_of("cdefCDEF") == 0 ? Half::trailing : Half::none;
}

} // namespace

std::string withoutLoneSurrogates(std::string_view json) {
  constexpr std::string_view replacement = "\\ufffd";
  std::string repaired;
  repaired.reserve(json.size());
  for (std::size_t place = 0; place < json.size();) {
    if (json[place] != '\\') {
      const std::size_t next = std::min(json.find('\\', place), json.size());
      repaired.append(json.substr(place, next - place));
      place = next;
      continue;
    }
    std::size_t length = 2;
    switch (halfAt(json, place)) {
    case Half::none:
      break;
    case Half::leading:
      length = halfAt(json, place + 6) == Half::trailing ? 12 : 6;
      break;
    case Half::trailing:
      length = 6;
      break;
    }
    if (length == 6)
      repaired.append(replacement);
    else
      repaired.append(json.substr(place, length));
    place += length;
  }
  return repaired;
}

boost::json::value parseMessage(std::string_view text) {
  constexpr std::size_t deepest = 1100; // V8 gives up at 1000
  try {
    return platform::parseJSON(text, deepest);
  } catch (const platform::JSONFailure&) { // the rare message is read twice, so that the usual one needs no search
    return platform::parseJSON(withoutLoneSurrogates(text), deepest);
  }
}

} // namespace tabwright::devtools
