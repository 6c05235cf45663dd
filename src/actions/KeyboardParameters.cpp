#include "actions/KeyboardParameters.h"

namespace tabwright::actions::keyboardparameters {

namespace {

template <class T>
intents::ParameterSpec<T> sharedParameter(std::string_view name, T defaultValue) {
  const auto key = [&](std::string_view part) {
    return intents::LocalizedText{"intent.general.parameter." + std::string(name) + "." + std::string(part),
                                  std::string(intents::tables::browsers)};
  };
  return {.name = name, .defaultValue = defaultValue, .title = key("title"), .description = key("description")};
}

} // namespace

intents::ParameterSpec<KeyboardModifiersStatus> modifiersStatus() {
  auto spec = sharedParameter("modifiersStatus", KeyboardModifiersStatus::disabled);
  spec.audience = intents::Audience::people;
  return spec;
}

intents::ParameterSpec<bool> functionModifier() {
  auto spec = modifier("modFn");
  spec.audience = intents::Audience::people; // it has no effect here
  return spec;
}

intents::ParameterSpec<bool> modifier(std::string_view name) {
  return sharedParameter(name, false);
}

} // namespace tabwright::actions::keyboardparameters
