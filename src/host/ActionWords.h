#pragma once

#include "intents/Intent.h"
#include "intents/ValueType.h"

#include <string>
#include <vector>

/// Pieces of text about an action that help, reference and manual share. In the user's language.
namespace tabwright::host {

/// A summary's sentence with its fields as "<name>", for people who fill them in: "Click the element <cssSelector> in
/// the <tabSelection> of <targetContext>".
[[nodiscard]] std::string sentenceOf(const intents::Intent& action, const intents::SummaryRow& row);

/// The condition of a form of the summary: "tabSelection specificTab". Empty for the form without condition.
[[nodiscard]] std::string conditionOf(const intents::SummaryRow& row);

/// The value that a parameter has as long as nobody gives one, as it would be given; empty when there is none.
[[nodiscard]] std::string defaultOf(const intents::ParameterDeclaration& declaration);

/// A value that a parameter offers: as it is given, and what it is called.
struct OfferedValue {
  std::string text;
  std::string caption;
};
/// The values that a parameter offers at this moment, each once: the cases of an enum, or the choices of its provider,
/// which may look at the machine. Empty for a parameter that offers none; it may take other values all the same.
[[nodiscard]] std::vector<OfferedValue> offersOf(const intents::ParameterDeclaration& declaration);

/// A type in the words of the user: "text", "Tab selection", "list of: Browser tab".
[[nodiscard]] std::string captionOf(const intents::ValueType& type);

} // namespace tabwright::host
