#include "scripting/foundation/FoundationBridge.h"

#include "scripting/foundation/FoundationObject.h"

#include <chrono>
#include <cstdint>

namespace tabwright::scripting {

using applescript::Value;

namespace {

constexpr const FoundationClass* foundationClasses[]{
    &objectClass, &stringClass,       &dictionaryClass, &mutableDictionaryClass,
    &arrayClass,  &mutableArrayClass, &dataClass,       &jsonSerializationClass,
    &numberClass, &nullClass,         &dateClass,       &characterSetClass,
};

struct FoundationConstant {
  std::string_view name;
  std::int64_t value;
};

// Values of Foundation's own headers.
constexpr FoundationConstant foundationConstants[]{
    {"NSUTF8StringEncoding", 4},
    {"NSJSONReadingMutableContainers", 1},
    {"NSJSONReadingAllowFragments", 4},
    {"NSJSONWritingPrettyPrinted", 1},
    {"NSJSONWritingSortedKeys", 2},
    {"NSJSONWritingFragmentsAllowed", 4},
    {"NSJSONWritingWithoutEscapingSlashes", 8},
};

double systemNow() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace

FoundationBridge::FoundationBridge(std::function<double()> now)
    : environment_(
          std::make_shared<const FoundationEnvironment>(FoundationEnvironment{now ? std::move(now) : systemNow})) {}

std::optional<Value> FoundationBridge::named(std::string_view name) const {
  for (const FoundationClass* type : foundationClasses) {
    if (type->name == name)
      return makeObject(*type, FoundationMetaclass{environment_});
  }
  for (const FoundationConstant& constant : foundationConstants) {
    if (constant.name == name)
      return Value(constant.value);
  }
  return std::nullopt;
}

} // namespace tabwright::scripting
