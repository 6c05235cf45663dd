#pragma once

#include "applescript/syntax/Tree.h"
#include "applescript/values/ObjectSpecifier.h"

namespace tabwright::applescript {

/// The form of the specifier that an access to elements comes to. `first` and `last` are indices there, and a bare
/// `tab x` is by index unless x turns out to be a text.
[[nodiscard]] constexpr ObjectSpecifier::Form specifierForm(ElementAccess::Form form) {
  switch (form) {
  case ElementAccess::Form::index:
  case ElementAccess::Form::first:
  case ElementAccess::Form::last:
    return ObjectSpecifier::Form::index;
  case ElementAccess::Form::middle:
    return ObjectSpecifier::Form::middle;
  case ElementAccess::Form::some:
    return ObjectSpecifier::Form::some;
  case ElementAccess::Form::every:
    return ObjectSpecifier::Form::every;
  case ElementAccess::Form::name:
    return ObjectSpecifier::Form::name;
  case ElementAccess::Form::id:
    return ObjectSpecifier::Form::id;
  case ElementAccess::Form::range:
    return ObjectSpecifier::Form::range;
  case ElementAccess::Form::before:
    return ObjectSpecifier::Form::before;
  case ElementAccess::Form::after:
    return ObjectSpecifier::Form::after;
  }
  return ObjectSpecifier::Form::every;
}

} // namespace tabwright::applescript
