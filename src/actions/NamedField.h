#pragma once

#include "actions/NamedElement.h"
#include "actions/enums/FormFieldSelectionOption.h"

#include <string>
#include <utility>

namespace tabwright::actions {

/// A form field that is told by a selector may be named as any element is; names and ids stay what they are.
struct NamedField {
  std::string text; ///< as the page's functions take it
  bool isElement = false;

  NamedField(const std::string& field, FormFieldSelectionOption selection)
      : text(selection == FormFieldSelectionOption::cssSelector ? elementText(field) : field),
        isElement(selection == FormFieldSelectionOption::cssSelector && namesElement(text)) {}

  /// A job's lines, made to know the field.
  [[nodiscard]] std::string known(std::string javascript) const {
    return isElement ? withNamedElements({text}, std::move(javascript)) : javascript;
  }
};

} // namespace tabwright::actions
