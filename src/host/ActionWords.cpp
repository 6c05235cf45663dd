// Help, reference, manual, completion and schemas say the same of an action since these pieces are made here alone: the
// facts come from its declaration, the words from the string catalogues.
#include "host/ActionWords.h"

#include "intents/EntityDeclaration.h"
#include "platform/StringCatalogue.h"

#include <boost/json/serialize.hpp>

#include <algorithm>
#include <optional>

namespace tabwright::host {

using intents::ParameterDeclaration;
using intents::ValueKind;

namespace {

std::string captionOfItem(const intents::ValueType& type) {
  // Without a default: the compiler names a kind that has no caption yet.
  switch (type.kind) {
  case ValueKind::nothing:
    return platform::localized("help.type.nothing");
  case ValueKind::text:
    return platform::localized("help.type.text");
  case ValueKind::boolean:
    return platform::localized("help.type.boolean");
  case ValueKind::integer:
    return platform::localized("help.type.integer");
  case ValueKind::file:
    return platform::localized("help.type.file");
  case ValueKind::enumeration:
    return type.enumeration->typeCaption().text();
  case ValueKind::entity:
    return type.entity->typeCaption.text();
  }
  return {};
}

} // namespace

std::string sentenceOf(const intents::Intent& action, const intents::SummaryRow& row) {
  std::string sentence = action.summaryText(row).text();
  for (const intents::ParameterBase* parameter : row.sentence) {
    const std::string field = "${" + parameter->name() + "}";
    // By the parameters of the row: a “${” of other words stays.
    if (const std::size_t place = sentence.find(field); place != std::string::npos)
      sentence.replace(place, field.size(), "<" + parameter->name() + ">");
  }
  return sentence;
}

std::string conditionOf(const intents::SummaryRow& row) {
  std::string text;
  for (const intents::SummaryCondition& condition : row.when)
    text += (text.empty() ? "" : ", ") + condition.parameter->name() + " " + condition.caseName;
  return text;
}

std::string defaultOf(const ParameterDeclaration& declaration) {
  if (const auto offered = declaration.options ? declaration.options->defaultResult() : std::nullopt)
    return offered->text;
  if (!declaration.defaultValue)
    return {};
  const boost::json::string* text = declaration.defaultValue->if_string();
  return text ? std::string(*text) : boost::json::serialize(*declaration.defaultValue);
}

std::vector<OfferedValue> offersOf(const ParameterDeclaration& declaration) {
  std::vector<OfferedValue> offers;
  if (const intents::EnumDeclaration* choices = declaration.type.enumeration) {
    for (const intents::EnumCase& one : choices->cases)
      offers.push_back({std::string(one.name), choices->caption(one).text()});
  } else if (declaration.options) {
    for (const intents::OptionSection& section : declaration.options->results()) {
      for (const intents::Option& option : section.options) { // a running browser is an installed one, too
        if (std::ranges::find(offers, option.text, &OfferedValue::text) == offers.end())
          offers.push_back({option.text, option.title});
      }
    }
  }
  return offers;
}

std::string captionOf(const intents::ValueType& type) {
  const std::string item = captionOfItem(type);
  return type.isList ? platform::localizedFormat("help.list", {item}) : item;
}

} // namespace tabwright::host
