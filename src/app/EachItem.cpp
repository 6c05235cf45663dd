// A list comes as an array, or as objects one behind the other, the form in which `--each` itself prints results: so
// two such runs can be joined by a pipe. A tab or window wins over other parameters, whose texts may hold lists of
// their own. A value that begins as a list and is no JSON is a mistake of its own, not a missing list.
#include "app/EachItem.h"

#include "client/RunWords.h"
#include "intents/EntityDeclaration.h"
#include "intents/UsageError.h"
#include "intents/ValueError.h"
#include "platform/TerminalCells.h"
#include "platform/Whitespace.h"

#include <boost/json/serialize.hpp>
#include <boost/json/stream_parser.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tabwright::app {
namespace {

using intents::UsageError;
using intents::ValueKind;

constexpr std::size_t longestName = 60;
constexpr std::string_view each = client::runWords::each.word;

// The JSON values that a text is, one behind the other, as commands print results; nothing for other texts.
std::optional<boost::json::array> valuesIn(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  boost::json::array values;
  boost::json::stream_parser parser;
  for (std::size_t start = text.find_first_not_of(blanks); start != std::string_view::npos;
       start = text.find_first_not_of(blanks)) {
    text.remove_prefix(start);
    boost::system::error_code failed;
    // One value at a time: a stream parser stops behind it, and what follows is the next.
    parser.reset();
    const std::size_t read = parser.write_some(text.data(), text.size(), failed);
    if (failed || !parser.done())
      return std::nullopt;
    values.push_back(parser.release());
    text.remove_prefix(read);
  }
  return values;
}

// An array's items, or the objects that stand one behind the other.
std::optional<boost::json::array> listIn(const std::string& text) {
  std::optional<boost::json::array> values = valuesIn(text);
  if (!values || values->empty())
    return std::nullopt;
  if (values->size() == 1 && values->front().is_array())
    return std::move(values->front().get_array());
  // Bare numbers and texts in a row are words that a text parameter was given, no list.
  if (!std::ranges::all_of(*values, [](const boost::json::value& value) { return value.is_object(); }))
    return std::nullopt;
  return values;
}

std::vector<GivenList> listsOf(const intents::Intent& action, const host::ParameterTexts& parameters, bool ofEntities) {
  std::vector<GivenList> lists;
  for (std::size_t place = 0; place < parameters.size(); ++place) {
    const intents::ParameterBase* parameter = action.findParameter(parameters[place].first);
    // A parameter that takes lists, or the content of a file, is meant to have the whole of it.
    if (!parameter || parameter->declaration().type.isList || parameter->declaration().type.kind == ValueKind::file ||
        (parameter->declaration().type.kind == ValueKind::entity) != ofEntities)
      continue;
    if (std::optional<boost::json::array> items = listIn(parameters[place].second))
      lists.push_back({.parameter = place, .items = std::move(*items)});
  }
  return lists;
}

} // namespace

GivenList listForEach(const intents::Intent& action, const host::ParameterTexts& parameters) {
  for (const bool ofEntities : {true, false}) {
    std::vector<GivenList> lists = listsOf(action, parameters, ofEntities);
    if (lists.size() > 1)
      throw UsageError(fmt::format("{} takes the items of one list, but {} and {} are both lists.", each,
                                   parameters[lists[0].parameter].first, parameters[lists[1].parameter].first));
    if (lists.size() == 1)
      return std::move(lists.front());
  }
  for (const auto& [name, text] : parameters) {
    if (platform::trimmingWhitespaceAndNewlines(text).starts_with('['))
      throw UsageError(fmt::format("{} needs a list, and {} begins as one, but is no JSON.", each, name));
  }
  const bool takesTab = action.findParameter("targetTab") != nullptr;
  throw UsageError(fmt::format("{} needs a list: give one for a parameter of {}{}.", each, action.name(),
                               takesTab ? ", such as --targetTab - behind a pipe from GetListOfTabs" : ""));
}

void requireNoList(const intents::Intent& action, const host::ParameterTexts& parameters) {
  for (const GivenList& list : listsOf(action, parameters, true)) {
    const std::string& name = parameters[list.parameter].first;
    if (list.items.empty())
      throw UsageError(fmt::format("{} needs a value, but the list given for it is empty: nothing was found.", name));
    if (list.items.size() > 1)
      throw UsageError(fmt::format("{} takes one item, and a list of {} was given. With {} behind it, {} runs for "
                                   "each of them.",
                                   name, list.items.size(), each, action.name()));
  }
}

std::string textOfItem(const boost::json::value& item) {
  return item.is_string() ? std::string(item.get_string()) : boost::json::serialize(item);
}

std::string nameOfItem(const intents::ValueType& type, const boost::json::value& item) {
  std::string name = textOfItem(item);
  try {
    if (type.entity && item.is_object())
      name = type.entity->displayRepresentation(item);
  } catch (const intents::ValueError&) { // which the run itself will tell
  }
  return platform::fitted(platform::onOneLine(name), longestName);
}

} // namespace tabwright::app
