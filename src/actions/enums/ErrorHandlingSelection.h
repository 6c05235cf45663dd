#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The outcomes of a menu action whose menu item isn't found.
enum class ErrorHandlingSelection {
  raiseError,    ///< the action fails
  returnNothing, ///< the action ends without a value
};

inline constexpr auto errorHandlingSelection = intents::enumTable<ErrorHandlingSelection>({
    {ErrorHandlingSelection::raiseError, "raiseError"},
    {ErrorHandlingSelection::returnNothing, "returnNothing"},
});

constexpr intents::EnumDeclaration enumDeclaration(ErrorHandlingSelection) {
  return {"ErrorHandlingSelection", intents::tables::enums, errorHandlingSelection};
}

} // namespace tabwright::actions
