// A text or an object that names a supported browser becomes the table's row; any other id is taken as it is, since a
// script may address applications that no table knows.
#include "targets/TargetContextValue.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"
#include "targets/ApplicationTarget.h"
#include "targets/SupportedBrowsers.h"

#include <algorithm>
#include <string>

namespace tabwright::intents {

namespace {

// A bundle identifier stands in programs between quotes, so it holds nothing that could end them.
bool isBundleIdentifier(std::string_view text) {
  const auto [id, profile] = platform::splitProfile(text);
  return (id.size() == text.size() || targets::isProfileName(profile)) && !id.empty() &&
         std::ranges::all_of(id, [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_';
         });
}

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
  // A text may be a slip of the pen, so it has to name something known; whoever writes an object with an id means it.
  if (const boost::json::string* text = json.if_string()) {
    if (auto known = targets::findTargetContext(*text))
      return *known;
    throw ValueError::unsuitable(json, expected());
  }
  if (!json.is_object())
    throw ValueError::unsuitable(json, expected());
  engine::TargetContext context = definition().fromJson(json);
  const auto known = targets::findTargetContext(context.id);
  if (known == engine::frontmostTargetContext()) // whatever it is called, it is the one to be resolved
    return *known;
  context.id = known ? known->id : platform::lowercased(context.id); // or an application that isn't in the table
  if (!isBundleIdentifier(context.id))
    throw ValueError::unsuitable(std::string_view(context.id), "a bundle identifier, such as org.chromium.chromium")
        .within("id");
  if (context.name.empty())
    // Users are shown the name.
    context.name = known ? known->name : context.id;
  return context;
}

engine::TargetContext ValueTraits<engine::TargetContext>::fromText(std::string_view text) {
  if (auto known = targets::findTargetContext(text))
    return *known;
  return fromJson(detail::parseValue(text, expected()));
}

targets::ApplicationTarget ValueTraits<targets::ApplicationTarget>::fromJson(const boost::json::value& json) {
  const boost::json::string* text = json.if_string();
  const std::string id = text ? platform::lowercased(*text) : std::string();
  // Names of browsers are taken by the reader of targets, which knows their rows.
  if (isBundleIdentifier(id) && !targets::findTargetContext(id))
    return engine::TargetContext{id, id};
  return ValueTraits<engine::TargetContext>::fromJson(json);
}

targets::ApplicationTarget ValueTraits<targets::ApplicationTarget>::fromText(std::string_view text) {
  // No id and no name of a browser has a brace.
  const bool isObject = text.find('{') != std::string_view::npos;
  return isObject ? ValueTraits<engine::TargetContext>::fromText(text) : fromJson(boost::json::value(text));
}

} // namespace tabwright::intents
