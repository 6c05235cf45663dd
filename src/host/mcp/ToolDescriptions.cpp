#include "host/mcp/ToolDescriptions.h"

#include "host/ActionWords.h"
#include "host/JsonSchema.h"
#include "platform/StringCatalogue.h"

#include <boost/json/object.hpp>

#include <string>

namespace tabwright::host {

namespace json = boost::json;

namespace {

// The title, what the action does for each form of its parameters, and what it gives.
std::string descriptionOf(const intents::Intent& action) {
  std::string text = action.title().text() + ".";
  for (const intents::SummaryRow& row : action.summary().rows) {
    const std::string condition = conditionOf(row);
    text += "\n- " + sentenceOf(action, row) + (condition.empty() ? "" : " (" + condition + ")");
  }
  return text + "\n" + platform::localizedFormat("reference.result", {captionOf(action.resultType())});
}

// Agents read every schema before they do anything. What a tab or a window looks like they see in results, and a
// parameter's description says what to give, so the shape of such objects is left out here.
json::object inputOf(const intents::Intent& action) {
  json::object schema = inputSchema(action);
  for (auto& [name, property] : schema.at("properties").as_object()) {
    json::object& one = property.as_object();
    if (one.erase("anyOf") > 0)
      one["type"] = json::array{"string", "object"};
  }
  return schema;
}

} // namespace

json::array toolDescriptions(const Catalogue& catalogue) {
  json::array tools;
  for (const auto& action : catalogue.declarations()) {
    const intents::Hints& hints = action->hints();
    json::object tool{{"name", action->name()},
                      {"title", action->title().text()},
                      {"description", descriptionOf(*action)},
                      {"inputSchema", inputOf(*action)}};
    tool["annotations"] = {{"title", action->title().text()},
                           {"readOnlyHint", hints.readsOnly},
                           {"destructiveHint", hints.destroys},
                           {"idempotentHint", hints.isIdempotent},
                           {"openWorldHint", hints.isOpen}};
    tools.push_back(std::move(tool));
  }
  return tools;
}

} // namespace tabwright::host
