#include "intents/EnumDeclaration.h"

#include <algorithm>

namespace tabwright::intents {

LocalizedText EnumDeclaration::typeCaption() const {
  return {"appEnum." + std::string(name) + ".typeDisplayRepresentation", std::string(table)};
}

LocalizedText EnumDeclaration::caption(const EnumCase& enumCase) const {
  return {"appEnum." + std::string(name) + ".caseDisplayRepresentation." + std::string(enumCase.name),
          std::string(table)};
}

const EnumCase* EnumDeclaration::find(std::string_view nameOrRawValue) const {
  auto found = std::ranges::find(cases, nameOrRawValue, &EnumCase::name);
  if (found == cases.end())
    found = std::ranges::find(cases, nameOrRawValue, &EnumCase::rawValue);
  return found == cases.end() ? nullptr : &*found;
}

} // namespace tabwright::intents
