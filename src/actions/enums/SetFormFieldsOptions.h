#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which `SetFormFields` reads the keys of its dictionary, as `FormFieldSelectionOption` reads a text.
enum class SetFormFields_FormFieldsSelectionOption { elementNameAttribute, elementIDAttribute, cssSelector };

inline constexpr auto setFormFieldsFormFieldsSelectionOptions =
    intents::enumTable<SetFormFields_FormFieldsSelectionOption>({
        {SetFormFields_FormFieldsSelectionOption::elementNameAttribute, "elementNameAttribute"},
        {SetFormFields_FormFieldsSelectionOption::elementIDAttribute, "elementIDAttribute"},
        {SetFormFields_FormFieldsSelectionOption::cssSelector, "cssSelector"},
    });

constexpr intents::EnumDeclaration enumDeclaration(SetFormFields_FormFieldsSelectionOption) {
  return {"SetFormFields_FormFieldsSelectionOption", intents::tables::standard,
          setFormFieldsFormFieldsSelectionOptions};
}

} // namespace tabwright::actions
