#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which a text names a field of a form. The raw value is the page library's name of it.
enum class FormFieldSelectionOption {
  elementNameAttribute, ///< by the field's `name` attribute
  elementIDAttribute,   ///< by the field's `id` attribute
  cssSelector,          ///< by a CSS selector
};

inline constexpr auto formFieldSelectionOptions = intents::enumTable<FormFieldSelectionOption>({
    {FormFieldSelectionOption::elementNameAttribute, "elementNameAttribute"},
    {FormFieldSelectionOption::elementIDAttribute, "elementIDAttribute"},
    {FormFieldSelectionOption::cssSelector, "cssSelector"},
});

constexpr intents::EnumDeclaration enumDeclaration(FormFieldSelectionOption) {
  return {"FormFieldSelectionOption", intents::tables::standard, formFieldSelectionOptions};
}

} // namespace tabwright::actions
