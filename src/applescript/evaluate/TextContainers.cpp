// Pieces of a text: characters, words, paragraphs, text items. A range of `text` is the stretch from the first to the
// last of its characters; a range of anything else is the list of the pieces.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Reference.h"

#include <algorithm>

namespace tabwright::applescript {

std::vector<std::string> Evaluator::delimiters() const {
  std::vector<std::string> texts;
  const Value::ListPointer list = listOf(script_.textItemDelimiters);
  for (const Value& delimiter : list->items)
    texts.push_back(textOf(delimiter));
  return texts;
}

// Valid until the next ones of this class are asked for, so nothing is evaluated while they are in use.
const std::vector<TextRange>& Evaluator::textRanges(const Text& text, FourCharCode elementClass) {
  switch (elementClass) {
  case codes::word:
    return pieces_.pieces(text, PieceIndex::Kind::words);
  case codes::paragraph:
    return pieces_.pieces(text, PieceIndex::Kind::paragraphs);
  case codes::textItem:
    return pieces_.pieces(text, PieceIndex::Kind::textItems, delimiters(), attributes_);
  default:
    return pieces_.pieces(text, PieceIndex::Kind::characters);
  }
}

namespace {

bool isElement(const ExpressionPointer& key) {
  return key && key->kind == Expression::Kind::element && !static_cast<const ElementAccess&>(*key).container;
}

} // namespace

// `text from word 2 to word 4 of t`: the ends are elements of the same text.
Value Evaluator::textBetweenElements(const Text& text, const ElementAccess& expression) {
  const auto placeOf = [&](const Expression& end) {
    const auto& element = static_cast<const ElementAccess&>(end);
    const ElementKey key = keyOf(element);
    const std::vector<TextRange>& ranges = textRanges(text, element.elementClass.code);
    return ranges[position(ranges.size(), element, key, Value(text))];
  };
  const TextRange from = placeOf(*expression.key);
  const TextRange to = placeOf(*expression.rangeEnd);
  const std::size_t start = std::min(from.offset, to.offset);
  const std::size_t end = std::max(from.offset + from.length, to.offset + to.length);
  const Text between(text.utf8().substr(start, end - start));
  if (isTextClass(expression.elementClass.code))
    return between;
  std::vector<Value> pieces;
  for (const TextRange range : textRanges(between, expression.elementClass.code))
    pieces.emplace_back(between.utf8().substr(range.offset, range.length));
  return Value::list(std::move(pieces));
}

Value Evaluator::textElement(const Text& text, const ElementAccess& expression) {
  const FourCharCode code = expression.elementClass.code;
  const std::string& utf8 = text.utf8();
  if (isTextClass(code) && expression.form == ElementAccess::Form::every)
    return text;
  if (expression.form == ElementAccess::Form::range && isElement(expression.key) && isElement(expression.rangeEnd))
    return textBetweenElements(text, expression);
  const ElementKey key = keyOf(expression);
  const bool isCharacters = code == codes::character || code == codes::item || isTextClass(code);
  const auto pieceAt = [&](TextRange range) { return Value(utf8.substr(range.offset, range.length)); };

  // Characters are found by position, without a table of all of them.
  if (isCharacters && expression.form != ElementAccess::Form::every) {
    const std::size_t count = characters_.count(text);
    if (expression.form != ElementAccess::Form::range)
      return pieceAt(characters_.character(text, position(count, expression, key, Value(text))));
    const auto [first, last] = positions(count, expression, key, Value(text));
    if (isTextClass(code)) {
      const std::size_t start = characters_.character(text, first).offset;
      const TextRange end = characters_.character(text, last);
      return pieceAt({start, end.offset + end.length - start});
    }
    std::vector<Value> pieces;
    for (std::size_t index = first; index <= last; ++index)
      pieces.push_back(pieceAt(characters_.character(text, index)));
    return Value::list(std::move(pieces));
  }

  const std::vector<TextRange>& ranges = textRanges(text, code);
  if (expression.form != ElementAccess::Form::every && expression.form != ElementAccess::Form::range)
    return pieceAt(ranges[position(ranges.size(), expression, key, Value(text))]);
  std::size_t first = 0;
  std::size_t end = ranges.size();
  if (expression.form == ElementAccess::Form::range) {
    const auto [low, high] = positions(ranges.size(), expression, key, Value(text));
    first = low;
    end = high + 1;
  }
  std::vector<Value> pieces;
  pieces.reserve(end - first);
  for (std::size_t index = first; index < end; ++index)
    pieces.push_back(pieceAt(ranges[index]));
  return Value::list(std::move(pieces));
}

} // namespace tabwright::applescript
