#pragma once

#include "applescript/terminology/Terminology.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A value in source form, as a script editor shows a result: `{1, "a"}`, `{x:1}`, `window id 5 of application "X"`.
/// Terminologies of the applications in specifiers name classes and properties; what they lack is shown by its code
/// (`«class CODE»`). `nothing` is the empty text. Asks no application, and looks through no reference. Cut off with `…`
/// beyond 64 MB, and below 100 levels of nesting.
[[nodiscard]] std::string sourceForm(const Value& value);

/// The same, cut off with `…` once it has grown longer than `limit` bytes. Never fails: a reference to an item that is
/// gone, which can't be read, is shown by its place.
[[nodiscard]] std::string sourceFormUpTo(const Value& value, std::size_t limit);

/// For the sentences of errors, which people read: the source form of at most a few lines (1,000 bytes).
[[nodiscard]] std::string shortSourceForm(const Value& value);

/// For the sentences of an application's errors, in front of which the application's name stands: specifiers in the
/// words of `dictionary`, else of the language, and without the application at their root. The application alone is
/// `application`.
[[nodiscard]] std::string shortSourceForm(const Value& value, const Terminology& dictionary);
[[nodiscard]] std::string shortSourceForm(const ObjectSpecifier& specifier, const Terminology& dictionary);

/// The words for the class of an element, or for a property (`singular` alone). Views: they must live until the call
/// has returned.
struct StepWords {
  std::string_view singular;
  std::string_view plural;
};
/// One step of a reference without its container and its test: `tab 3`, `last tab`, `tab id "8"`, `every tab`, `tabs 2
/// thru 4`.
[[nodiscard]] std::string stepSourceForm(const ObjectSpecifier& step, StepWords words);
/// The words of a step, up to its key where the form takes one: `tab `, `tab id `, `every tab`, `tabs `.
[[nodiscard]] std::string wordsBeforeKey(ObjectSpecifier::Form form, StepWords words);

/// The operator as source has it, without blanks around.
[[nodiscard]] constexpr std::string_view sourceForm(TestOperator comparison) {
  constexpr std::array<std::string_view, 9> words{"=",           ">",         "≥",        "<",    "≤",
                                                  "begins with", "ends with", "contains", "is in"};
  return words[static_cast<std::size_t>(comparison)];
}

/// A name as source has it: between bars when it isn't an identifier.
[[nodiscard]] std::string nameInSource(std::string_view name);

/// The words of a class, or `«class CODE»` for one without.
[[nodiscard]] std::string classWords(const ClassName& name);
/// The words of a command in a dictionary, else in the language, or `«event CODE»`.
[[nodiscard]] std::string commandWords(EventCode event, const Terminology& dictionary);

} // namespace tabwright::applescript
