#include "host/mcp/ToolDescriptions.h"

#include "host/ActionWords.h"
#include "host/JsonSchema.h"
#include "platform/StringCatalogue.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace tabwright::host {

namespace json = boost::json;

namespace {

constexpr auto hints = std::to_array<ToolHints>({
    {.action = "ClickElement", .destroys = true},
    {.action = "ClickLink", .destroys = true},
    {.action = "CloseTab", .destroys = true, .isOpen = false},
    {.action = "CloseWindow", .destroys = true, .isOpen = false},
    {.action = "CreateTab", .isOpen = false},
    {.action = "CreateWindow"},
    {.action = "FocusTab", .isIdempotent = true, .isOpen = false},
    {.action = "FocusWindow", .isIdempotent = true, .isOpen = false},
    {.action = "GetBrowserReference", .readsOnly = true, .isIdempotent = true, .isOpen = false},
    {.action = "GetDetailsOfTab", .readsOnly = true, .isIdempotent = true},
    {.action = "GetFormFieldValue", .readsOnly = true, .isIdempotent = true},
    {.action = "GetFrontmostWindow", .readsOnly = true, .isIdempotent = true, .isOpen = false},
    {.action = "GetListOfTabs", .readsOnly = true, .isIdempotent = true, .isOpen = false},
    {.action = "GetListOfWindows", .readsOnly = true, .isIdempotent = true, .isOpen = false},
    {.action = "OpenInTab", .destroys = true}, // the page that was in the tab goes
    {.action = "ReloadTab", .destroys = true}, // with what was typed into it
    {.action = "RunAppleScript", .destroys = true},
    {.action = "RunJavascriptInTab", .destroys = true},
    {.action = "ScrollToElement", .isIdempotent = true},
    {.action = "SetFormFieldValue", .destroys = true}, // which may send the form
    {.action = "SetFormFields", .destroys = true},
    {.action = "WaitForElement", .readsOnly = true, .isIdempotent = true},
    {.action = "WaitForTabToFinishLoading", .readsOnly = true, .isIdempotent = true, .isOpen = false},
});
static_assert(std::ranges::is_sorted(hints, {}, &ToolHints::action));

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

const ToolHints& hintsOf(std::string_view action) {
  const auto row = std::ranges::lower_bound(hints, action, {}, &ToolHints::action);
  if (row == hints.end() || row->action != action)
    throw std::logic_error("no tool hints for " + std::string(action));
  return *row;
}

json::array toolDescriptions(const Catalogue& catalogue) {
  json::array tools;
  for (const auto& action : catalogue.declarations()) {
    const ToolHints& hint = hintsOf(action->name());
    json::object tool{{"name", action->name()},
                      {"title", action->title().text()},
                      {"description", descriptionOf(*action)},
                      {"inputSchema", inputOf(*action)}};
    tool["annotations"] = {{"title", action->title().text()},
                           {"readOnlyHint", hint.readsOnly},
                           {"destructiveHint", hint.destroys},
                           {"idempotentHint", hint.isIdempotent},
                           {"openWorldHint", hint.isOpen}};
    tools.push_back(std::move(tool));
  }
  return tools;
}

} // namespace tabwright::host
