#pragma once

#include "applescript/syntax/ScriptParser.h"

#include <cstdint>
#include <optional>

/// References: chains of `of` and `'s`, and the elements in them.
namespace tabwright::applescript {

ExpressionPointer parseChain(ScriptParser& p);
ExpressionPointer parsePossessives(ScriptParser& p, ExpressionPointer head);
/// `my x`, `its x`.
ExpressionPointer parseMemberOf(ScriptParser& p, Expression::Kind owner);

// ParseElements.cpp
struct FoundClass {
  ClassName name;
  bool isPlural = false;
};
/// The class that stands at the cursor, which then is behind it; nothing, and the cursor stays.
std::optional<FoundClass> acceptClass(ScriptParser& p);
ExpressionPointer parseElement(ScriptParser& p, FoundClass found, std::size_t startOffset);
ExpressionPointer parseEvery(ScriptParser& p);
/// `some x`, `middle x`.
ExpressionPointer parsePicked(ScriptParser& p, ElementAccess::Form form);
/// `3rd x`, `third x`; −1 for `last x`.
ExpressionPointer parseOrdinal(ScriptParser& p, std::int64_t number);
ExpressionPointer parseInsertionPoint(ScriptParser& p, InsertionPoint::Form form, std::size_t words);
/// Less than an expression: `item i of xs` is the item at `i`, not the item at `i of xs`.
ExpressionPointer parseKey(ScriptParser& p);
[[nodiscard]] bool canStartKey(const ScriptParser& p, std::size_t ahead = 0);
/// Something that picks elements of a class stands behind its words: `3`, `id 5`, `before …`.
[[nodiscard]] bool startsElementKey(const ScriptParser& p, std::size_t words);

} // namespace tabwright::applescript
