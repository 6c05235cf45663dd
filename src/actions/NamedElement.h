#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::actions {

/// A job does without an element that isn't there, or it waits for it to come.
enum class MissingElement { fails, isWaitedFor };

/// True for a text that names an element otherwise than by a selector of CSS: a reference from an outline ("kqz12"), a
/// role and a name as an outline tells them (`button "Sign in"`), a name in quotes alone, or an element of an outline
/// as JSON. None of them matches anything as a selector.
[[nodiscard]] bool namesElement(std::string_view selector);

/// The text by which the page knows the element: the reference of an element as JSON, any other text as it is. Throws
/// `intents::UsageError` for JSON without a reference.
[[nodiscard]] std::string elementText(const std::string& selector);

/// `javascript`, the lines of a page job, made to know the elements that `selectors` name: behind it the library's
/// functions find them as they find what a selector matches. Jobs with nothing but selectors stay as they are.
[[nodiscard]] std::string withNamedElements(const std::vector<std::string>& selectors, std::string javascript,
                                            MissingElement missing = MissingElement::fails);

} // namespace tabwright::actions
