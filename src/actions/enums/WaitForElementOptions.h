#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The times for which `WaitForElement` waits; raw values are seconds.
enum class WaitForElement_TimeoutOption { p00, p02, p04, p06, p08, p10, p12, p14, p16, p18, p20 };

inline constexpr auto waitForElementTimeoutOptions = intents::enumTable<WaitForElement_TimeoutOption>({
    {WaitForElement_TimeoutOption::p00, "p00", "0.0"},
    {WaitForElement_TimeoutOption::p02, "p02", "2.0"},
    {WaitForElement_TimeoutOption::p04, "p04", "4.0"},
    {WaitForElement_TimeoutOption::p06, "p06", "6.0"},
    {WaitForElement_TimeoutOption::p08, "p08", "8.0"},
    {WaitForElement_TimeoutOption::p10, "p10", "10.0"},
    {WaitForElement_TimeoutOption::p12, "p12", "12.0"},
    {WaitForElement_TimeoutOption::p14, "p14", "14.0"},
    {WaitForElement_TimeoutOption::p16, "p16", "16.0"},
    {WaitForElement_TimeoutOption::p18, "p18", "18.0"},
    {WaitForElement_TimeoutOption::p20, "p20", "20.0"},
});

constexpr intents::EnumDeclaration enumDeclaration(WaitForElement_TimeoutOption) {
  return {"WaitForElement_TimeoutOption", intents::tables::standard, waitForElementTimeoutOptions};
}

/// The outcomes of `WaitForElement` for an element that didn't show up in time.
enum class WaitForElement_OnFailureOption {
  returnFalse, ///< the result is false
  raiseError,  ///< the action fails with `pageElementNotFound`
};

inline constexpr auto waitForElementOnFailureOptions = intents::enumTable<WaitForElement_OnFailureOption>({
    {WaitForElement_OnFailureOption::returnFalse, "returnFalse"},
    {WaitForElement_OnFailureOption::raiseError, "raiseError"},
});

constexpr intents::EnumDeclaration enumDeclaration(WaitForElement_OnFailureOption) {
  return {"WaitForElement_OnFailureOption", intents::tables::standard, waitForElementOnFailureOptions};
}

} // namespace tabwright::actions
