#include "actions/MenuParameters.h"

namespace tabwright::actions {

namespace {

// Optional, since an action has several ways to name an item and asks for the text of the chosen one itself.
intents::ParameterSpec<std::string> textSpec(std::string_view name, std::string_view example) {
  return {.name = name, .presence = intents::Presence::optional, .example = example};
}

intents::ParameterSpec<std::string> segmentSpec(std::string_view name, std::string_view example) {
  auto spec = textSpec(name, example);
  spec.audience = intents::Audience::people;
  return spec;
}

intents::LocalizedText sharedKey(std::string_view parameter, std::string_view part) {
  return {"intent.general.parameter." + std::string(parameter) + "." + std::string(part),
          std::string(intents::tables::browsers)};
}

} // namespace

// A path in one text says the same, and is what agents are offered.
MenuPathParameters::MenuPathParameters(ActionFrame& action, std::string_view main, std::string_view segment)
    : main(action, segmentSpec(main, "File")), segment1(action, segmentSpec(std::string(segment) + "1", "Save As…")),
      segment2(action, segmentSpec(std::string(segment) + "2", {})),
      segment3(action, segmentSpec(std::string(segment) + "3", {})),
      segment4(action, segmentSpec(std::string(segment) + "4", {})) {}

namespace menuparameters {

intents::ParameterSpec<MenuItemBasicsSelection> basicsSelection() {
  return {.name = "menuItemBasicsSelection",
          .defaultValue = MenuItemBasicsSelection::title,
          .title = sharedKey("menuItemBasicsSelection", "title"),
          .description = sharedKey("menuItemBasicsSelection", "description")};
}

intents::ParameterSpec<std::string> title(std::string_view name, std::string_view example) {
  return textSpec(name, example);
}

intents::ParameterSpec<std::string> path(std::string_view name, std::string_view example) {
  auto spec = textSpec(name, example);
  spec.description = sharedKey("menuItemPath", "description");
  return spec;
}

intents::ParameterSpec<automation::StringFilterEnum> titleFilter() {
  return {.name = "titleFilterSelection", .defaultValue = automation::StringFilterEnum::isExactly};
}

intents::ParameterSpec<bool> caseInsensitive() {
  return {.name = "isFilterCaseInsensitive", .defaultValue = false};
}

intents::ParameterSpec<PostActionDelay> postActionDelay() {
  return {.name = "postActionDelay", .defaultValue = PostActionDelay::none};
}

intents::ParameterSpec<automation::MenuItemEntity> menuItem(intents::Presence presence) {
  return {.name = "menuItem",
          .presence = presence,
          .title = sharedKey("menuItem", "title"),
          .description = sharedKey("menuItem", "description"),
          .example = R"({"app":{"id":"org.xfce.mousepad"},"pathSegments":["File","Save As…"]})"};
}

} // namespace menuparameters

} // namespace tabwright::actions
