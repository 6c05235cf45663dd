#pragma once

#include "applescript/lexer/Keyword.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tabwright::applescript {

/// A word or two that may label a parameter of a handler: `on f of x from a out of b`. The set is the language's own;
/// any other label needs `given`. `of` is not among them: it is the direct parameter.
struct Preposition {
  /// The label that a call and a definition are matched by; `through` is `thru`.
  std::string_view name;
  Keyword first;
  /// Keyword::none for a preposition of one word.
  Keyword second = Keyword::none;
};
inline constexpr auto prepositions = std::to_array<Preposition>({
    {"about", Keyword::about},
    {"above", Keyword::above},
    {"against", Keyword::against},
    {"apart from", Keyword::apart, Keyword::from},
    {"around", Keyword::around},
    {"aside from", Keyword::aside, Keyword::from},
    {"at", Keyword::at},
    {"below", Keyword::below},
    {"beneath", Keyword::beneath},
    {"beside", Keyword::beside},
    {"between", Keyword::between},
    {"by", Keyword::by},
    {"for", Keyword::for_},
    {"from", Keyword::from},
    {"instead of", Keyword::instead, Keyword::of},
    {"into", Keyword::into},
    {"on", Keyword::on},
    {"onto", Keyword::onto},
    {"out of", Keyword::out, Keyword::of},
    {"over", Keyword::over},
    {"since", Keyword::since},
    {"thru", Keyword::thru},
    {"thru", Keyword::through},
    {"to", Keyword::to},
});

/// A labelled parameter of that name stands without `given`.
[[nodiscard]] constexpr bool isPreposition(std::string_view label) {
  return std::ranges::any_of(prepositions, [label](const Preposition& row) { return row.name == label; });
}

} // namespace tabwright::applescript
