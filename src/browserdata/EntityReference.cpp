// References go into programs between quotes, so they are checked where they enter, and for nothing but that.
#include "browserdata/EntityReference.h"

#include "intents/ValueError.h"
#include "targets/SupportedBrowsers.h"

#include <algorithm>

namespace tabwright::browserdata {

namespace {

bool isReference(std::string_view text) {
  return std::ranges::all_of(
      text, [](unsigned char c) { return c >= ' ' && c != 0x7F && c != '"' && c != '\\' && c != '{' && c != '}'; });
}

} // namespace

std::optional<EntityReference> readReference(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon + 1 == text.size() || !isReference(text))
    return std::nullopt;
  const auto browser = targets::findTargetContext(text.substr(0, colon));
  // The frontmost browser may be another one later, so a reference names its browser.
  if (!browser || *browser == engine::frontmostTargetContext())
    return std::nullopt;
  // With the full id, even where the text has the browser's short name.
  return EntityReference{*browser, browser->id + std::string(text.substr(colon))};
}

void requireReference(std::string_view fullID) {
  if (!isReference(fullID))
    throw intents::ValueError::unsuitable(fullID, "a reference as actions print it, such as chromium:8")
        .within("fullID");
}

} // namespace tabwright::browserdata
