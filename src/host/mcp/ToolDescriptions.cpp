// Every conversation with an agent begins with all of these texts, so each has what a first call needs, once: a
// sentence with the parameters in it, a line for each of them, choices by their names alone. More stands in the help.
#include "host/mcp/ToolDescriptions.h"

#include "host/ActionWords.h"
#include "host/JsonSchema.h"
#include "intents/EnumDeclaration.h"
#include "platform/StringCatalogue.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <string>

namespace tabwright::host {

namespace json = boost::json;

namespace {

constexpr std::size_t mostExamples = 12; // of the names of keys there are 60

// True for a choice whose cases follow from what else is given, but for the default: a tab that is named is the one to
// work on. Agents aren't offered it, since many of them write defaults down, which would contradict the tab.
bool isSettledByOthers(const intents::Intent& action, const intents::ParameterBase& choice) {
  const intents::ParameterDeclaration& declaration = choice.declaration();
  return declaration.type.kind == intents::ValueKind::enumeration &&
         std::ranges::all_of(declaration.type.enumeration->cases, [&](const intents::EnumCase& one) {
           return declaration.defaultValue == json::value(one.name) ||
                  std::ranges::any_of(action.dependences(), [&](const intents::Dependence& dependence) {
                    return dependence.counts == intents::Dependence::Counts::whileItHolds &&
                           dependence.condition.parameter == &choice && dependence.condition.caseName == one.name;
                  });
         });
}

// True for what agents aren't offered.
bool isLeftOut(const intents::Intent& action, const intents::ParameterBase& parameter) {
  return parameter.declaration().audience == intents::Audience::people || isSettledByOthers(action, parameter);
}

std::string descriptionOf(const intents::Intent& action) {
  std::string text = sentenceOf(action, action.summary().current()) + ".";
  for (const intents::ParameterBase* parameter : action.parameters()) {
    const std::string field = "<" + parameter->name() + ">";
    if (const std::size_t place = text.find(field);
        place != std::string::npos && isSettledByOthers(action, *parameter)) {
      const intents::EnumDeclaration& choices = *parameter->declaration().type.enumeration;
      text.replace(place, field.size(), choices.caption(*choices.find(defaultOf(parameter->declaration()))).text());
    }
  }
  if (const intents::ValueType result = action.resultType(); result.kind != intents::ValueKind::nothing)
    text += " " + platform::localizedFormat("reference.result", {captionOf(result)}) + ".";
  return text;
}

// A number of seconds tells more than the name of its case.
void nameBySeconds(json::object& property, const intents::EnumDeclaration& choices) {
  json::array seconds;
  for (const intents::EnumCase& one : choices.cases)
    seconds.emplace_back(one.rawValue);
  property["enum"] = std::move(seconds);
  if (json::value* initial = property.if_contains("default"))
    *initial = choices.find(initial->as_string())->rawValue;
}

// A tab or a window is given by its reference, and other entities as they came: agents have seen in results what the
// whole of them looks like.
json::object inputOf(const intents::Intent& action) {
  json::object schema = inputSchema(action);
  // Said of every tool it costs, and unknown names are refused with the nearest ones anyhow.
  schema.stable_erase("additionalProperties");
  json::object& properties = schema.at("properties").as_object();
  for (const intents::ParameterBase* parameter : action.parameters()) {
    const intents::ParameterDeclaration& declaration = parameter->declaration();
    if (isLeftOut(action, *parameter)) {
      properties.stable_erase(declaration.name);
      continue;
    }
    json::object& property = properties.at(declaration.name).as_object();
    const std::string description = declaration.description.text();
    property.stable_erase("title");
    // Behind the first line stands what only help shows.
    property["description"] = description.substr(0, description.find('\n'));
    if (property.stable_erase("anyOf") > 0)
      property["type"] = "string";
    property.stable_erase("properties");
    property.stable_erase("required");
    property.stable_erase("additionalProperties");
    if (json::value* const examples = property.if_contains("examples"))
      examples->as_array().resize(std::min(examples->as_array().size(), mostExamples));
    if (const intents::EnumDeclaration* choices = declaration.type.enumeration; choices && choices->isOfSeconds())
      nameBySeconds(property, *choices);
  }
  return schema;
}

// Those that differ from what the protocol takes for granted.
json::object annotationsOf(const intents::Hints& hints) {
  json::object annotations;
  if (hints.readsOnly)
    annotations["readOnlyHint"] = true;
  else if (!hints.destroys)
    annotations["destructiveHint"] = false;
  if (hints.isIdempotent)
    annotations["idempotentHint"] = true;
  if (!hints.isOpen)
    annotations["openWorldHint"] = false;
  return annotations;
}

} // namespace

json::array toolDescriptions(const Catalogue& catalogue) {
  json::array tools;
  for (const auto& action : catalogue.declarations()) {
    json::object tool{{"name", action->name()},
                      {"title", action->title().text()},
                      {"description", descriptionOf(*action)},
                      {"inputSchema", inputOf(*action)}};
    if (json::object annotations = annotationsOf(action->hints()); !annotations.empty())
      tool["annotations"] = std::move(annotations);
    tools.push_back(std::move(tool));
  }
  return tools;
}

} // namespace tabwright::host
