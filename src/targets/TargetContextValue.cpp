#include "targets/TargetContextValue.h"

#include "platform/AsciiCase.h"
#include "targets/SupportedBrowsers.h"

#include <string>

namespace tabwright::intents {

namespace {

std::string expected() {
  std::string names = "one of frontmost";
  for (const engine::TargetContext& browser : targets::supportedBrowsers())
    names += ", " + std::string(targets::shortNameOf(browser));
  return names + ", or an object with an id";
}

} // namespace

const EntityDefinition<engine::TargetContext>& ValueTraits<engine::TargetContext>::definition() {
  static const EntityDefinition<engine::TargetContext> definition(
      "TargetContext",
      {{"id", &engine::TargetContext::id, PropertyPresence::needed}, {"name", &engine::TargetContext::name}},
      [](const engine::TargetContext& context) { return context.name; }, TextForm::names);
  return definition;
}

engine::TargetContext ValueTraits<engine::TargetContext>::fromJson(const boost::json::value& json) {
  if (const boost::json::string* text = json.if_string()) {
    if (auto known = targets::findTargetContext(*text))
      return *known;
    throw ValueError::unsuitable(json, expected());
  }
  if (!json.is_object())
    throw ValueError::unsuitable(json, expected());
  engine::TargetContext context = definition().fromJson(json);
  const auto known = targets::findTargetContext(context.id);
  context.id = known ? known->id : platform::lowercased(context.id); // or an application that isn't in the table
  if (context.name.empty() && known)
    context.name = known->name;
  if (context.id.empty() || context.name.empty())
    throw ValueError::unsuitable(json, expected());
  return context;
}

engine::TargetContext ValueTraits<engine::TargetContext>::fromText(std::string_view text) {
  if (auto known = targets::findTargetContext(text))
    return *known;
  return fromJson(detail::parseValue(text, expected()));
}

} // namespace tabwright::intents
