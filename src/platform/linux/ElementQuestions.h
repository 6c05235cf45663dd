#pragma once

#include "platform/AccessibleElement.h"

#include <span>

struct sd_bus_message;

namespace tabwright::platform {

/// One part of an element, and the question for it on the accessibility bus (AT-SPI 2, interfaces org.a11y.atspi.*).
///
///     for (const ElementQuestion& question : elementQuestions())
///       if (parts.*question.part)
///         ask(question);
struct ElementQuestion {
  bool AccessibleParts::* part;
  const char* interface;
  const char* member;
  enum { method, property } kind;
  void (*fill)(sd_bus_message* call); ///< appends the arguments of a method; null: there are none
  /// Reads an answer that is no error. One of another shape leaves the part as it is.
  void (*take)(sd_bus_message* answer, AccessibleFacts& facts);
};

/// A question for each part. Each asks for one thing: asking for all properties of an element at once ends programs of
/// Qt 6.4.
[[nodiscard]] std::span<const ElementQuestion> elementQuestions();

/// Reads a list of references, without those that stand for nothing. The answer is an array of AT-SPI's pairs of a bus
/// name and a path; for any other the list is empty.
[[nodiscard]] std::vector<AccessibleElement> readElements(sd_bus_message* answer);

} // namespace tabwright::platform
