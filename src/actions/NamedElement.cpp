// The library's functions look for elements by `document.querySelector`. A job with named elements has a `document` of
// its own in the block of these functions, whose selector step knows references and names; the page's isn't touched.
#include "actions/NamedElement.h"

#include "engine/PageLibrary.h"
#include "intents/UsageError.h"
#include "platform/JSONFailure.h"
#include "platform/JSONText.h"
#include "platform/Whitespace.h"

#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <algorithm>

namespace tabwright::actions {
namespace {

bool isLetter(char character) {
  return character >= 'a' && character <= 'z';
}
bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isReference(std::string_view text) {
  constexpr std::size_t letters = 3;
  return text.size() > letters && std::ranges::all_of(text.substr(0, letters), isLetter) && text[letters] != '0' &&
         std::ranges::all_of(text.substr(letters), isDigit);
}

// A word, perhaps, and a text in double quotes: no selector has these.
bool isRoleAndName(std::string_view text) {
  const std::size_t quote = text.find('"');
  if (quote == std::string_view::npos || text.size() < quote + 2 || text.back() != '"')
    return false;
  const std::string_view role = text.substr(0, quote);
  return role.empty() || (role.back() == ' ' && isLetter(role.front()) &&
                          std::ranges::all_of(role.substr(0, role.size() - 1),
                                              [](char each) { return isLetter(each) || isDigit(each); }));
}

bool isObject(std::string_view text) {
  return text.starts_with('{');
}

} // namespace

bool namesElement(std::string_view selector) {
  // Through a pipe comes a line feed behind it.
  const std::string_view text = platform::trimmingWhitespaceAndNewlines(selector);
  return isReference(text) || isRoleAndName(text) || isObject(text);
}

std::string elementText(const std::string& selector) {
  if (!namesElement(selector))
    return selector;
  const std::string_view text = platform::trimmingWhitespaceAndNewlines(selector);
  if (!isObject(text))
    return std::string(text);
  try {
    const boost::json::value json = platform::parseJSON(text);
    if (const boost::json::value* reference = json.as_object().if_contains("reference");
        reference && reference->is_string())
      return std::string(reference->get_string());
  } catch (const platform::JSONFailure& failure) {
    throw failure.named("element");
  }
  throw intents::UsageError("The element has no reference: give one of GetPageOutline’s elements as it was printed, or "
                            "its reference alone, such as kqz12.");
}

std::string withNamedElements(const std::vector<std::string>& selectors, std::string javascript,
                              MissingElement missing) {
  if (std::ranges::none_of(selectors, namesElement))
    return javascript;
  return fmt::format("{}const document = documentOfNamedElements({});\n{}", engine::outlineLibrary(),
                     missing == MissingElement::isWaitedFor, javascript);
}

} // namespace tabwright::actions
