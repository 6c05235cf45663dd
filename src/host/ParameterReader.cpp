// Each value goes to its parameter as it comes, whose own type reads it; complaints get the parameter's name and the
// nearest of its choices here. Choices that were left open are settled at the end only, as any value may be the one
// that settles them.
#include "host/ParameterReader.h"

#include "host/ActionWords.h"
#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "intents/ValueError.h"
#include "platform/Utf8.h"

#include <fmt/core.h>
#include <fmt/format.h>

#include <algorithm>
#include <type_traits>

namespace tabwright::host {

namespace {

intents::ParameterBase& requireParameter(intents::Intent& action, std::string_view name) {
  if (intents::ParameterBase* const found = action.findParameter(name))
    return *found;
  std::vector<std::string> names;
  for (const intents::ParameterBase* parameter : action.parameters())
    names.push_back(parameter->name());
  throw intents::UsageError(
      fmt::format("{} has no parameter “{}”.{}", action.name(), name,
                  didYouMean(name, names, fmt::format(" Its parameters are {}.", fmt::join(names, ", ")))));
}

// The choices of a parameter that can't take the text it was given, for a user who misspelt one.
std::string nearestChoice(const intents::ParameterBase& parameter, std::string_view text) {
  const intents::ParameterDeclaration& declaration = parameter.declaration();
  // Numbers aren't misspelt, and the complaint has all of them.
  if (declaration.type.enumeration && declaration.type.enumeration->isOfSeconds())
    return {};
  std::vector<std::string> choices;
  for (OfferedValue& offer : offersOf(declaration))
    choices.push_back(std::move(offer.text));
  return didYouMean(text, choices, "");
}

std::string_view textIn(const std::string& value) {
  return value;
}
std::string_view textIn(const boost::json::value& value) {
  const boost::json::string* text = value.if_string();
  return text ? std::string_view(*text) : std::string_view();
}

// Bytes that are no text would come to light where nobody knows any more whose they are.
void assign(intents::ParameterBase& parameter, const std::string& text) {
  if (const auto place = platform::malformedByte(text))
    throw intents::UsageError(fmt::format(
        "{} takes text in UTF-8, but byte {} of what it was given (hexadecimal {:02X}) belongs to no character.",
        parameter.name(), *place + 1, static_cast<unsigned char>(text[*place])));
  parameter.setText(text);
}
void assign(intents::ParameterBase& parameter, const boost::json::value& json) {
  parameter.setJson(json);
}

// A value of null counts as not given. A tab or a window that is null was to come from somewhere: without it another
// one would be taken, and perhaps closed.
void requireNoneMeant(const intents::Intent& action, const intents::ParameterBase& parameter) {
  const bool isAimed = std::ranges::any_of(action.dependences(), [&](const intents::Dependence& dependence) {
    return dependence.parameter == &parameter && parameter.declaration().type.kind == intents::ValueKind::entity;
  });
  if (isAimed)
    throw intents::UsageError(fmt::format("{} is null: what should give it has given nothing. Leave it out to mean the "
                                          "one in front.",
                                          parameter.name()));
}

// Hands each value to its parameter, and yields which were given.
template <class Values>
GivenParameters readEach(intents::Intent& action, const Values& values) {
  GivenParameters named;
  GivenParameters given;
  for (const auto& [name, value] : values) {
    intents::ParameterBase& parameter = requireParameter(action, name);
    // By the parameter, not by the name: names are the same in any case.
    if (!named.insert(&parameter).second)
      throw intents::UsageError(parameter.name() + " is given twice.");
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, boost::json::value>) {
      if (value.is_null()) {
        requireNoneMeant(action, parameter);
        continue;
      }
    }
    try {
      assign(parameter, value);
    } catch (const intents::ValueError& error) {
      throw intents::UsageError(error.within(parameter.name()).errorDescription() +
                                nearestChoice(parameter, textIn(value)));
    }
    given.insert(&parameter);
  }
  return given;
}

} // namespace

void readParameters(intents::Intent& action, const ParameterValues& values) {
  settleOpenChoices(action, readParameterValues(action, values));
}

GivenParameters readParameterValues(intents::Intent& action, const ParameterValues& values) {
  return std::visit([&action](const auto& named) { return readEach(action, named); }, values);
}

} // namespace tabwright::host
