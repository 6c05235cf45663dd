#pragma once

#include "applescript/syntax/ScriptParser.h"

#include <cstdint>
#include <optional>

/// References: chains of `of` and `'s`, and the elements in them.
namespace tabwright::applescript {

/// A reference with its containers and its `whose`: `name of every tab of w whose …`. Also any expression without
/// operators that has none.
ExpressionPointer parseChain(ScriptParser& p);
/// All `'s` members behind `head`, which is taken in: the innermost container.
ExpressionPointer parsePossessives(ScriptParser& p, ExpressionPointer head);
/// `my x`, `its x`.
ExpressionPointer parseMemberOf(ScriptParser& p, Expression::Kind owner);

// ParseElements.cpp
/// A class as it was written; `name` has the singular whatever was written.
struct FoundClass {
  ClassName name;
  bool isPlural = false;
};
/// The class that stands at the cursor, which then is behind it; nothing, and the cursor stays. `«class abcd»` counts
/// too, unless something picks from it.
std::optional<FoundClass> acceptClass(ScriptParser& p);
/// Behind a class: what picks from it. Without such it is all elements in the plural (`tabs`), and the class itself in
/// the singular. `startOffset` is where the class starts, in bytes.
ExpressionPointer parseElement(ScriptParser& p, FoundClass found, std::size_t startOffset);
/// `every x`, and `every x from a to b`.
ExpressionPointer parseEvery(ScriptParser& p);
/// `some x`, `middle x`.
ExpressionPointer parsePicked(ScriptParser& p, ElementAccess::Form form);
/// `3rd x`, `third x`; −1 for `last x`.
ExpressionPointer parseOrdinal(ScriptParser& p, std::int64_t number);
/// `beginning`, `end`, `before x`, `after x`, of whose words the first `words` are passed over. The container of the
/// first two is left to parseChain.
ExpressionPointer parseInsertionPoint(ScriptParser& p, InsertionPoint::Form form, std::size_t words);
/// Less than an expression: `item i of xs` is the item at `i`, not the item at `i of xs`.
ExpressionPointer parseKey(ScriptParser& p);
/// A key may begin that many tokens ahead. Takes none.
[[nodiscard]] bool canStartKey(const ScriptParser& p, std::size_t ahead = 0);
/// Something that picks elements of a class stands behind its words: `3`, `id 5`, `before …`.
[[nodiscard]] bool startsElementKey(const ScriptParser& p, std::size_t words);

} // namespace tabwright::applescript
