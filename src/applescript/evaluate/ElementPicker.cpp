// Elements of values. A class other than `item` narrows the candidates before one is picked. A range of `text` is the
// stretch from the first to the last of its characters; a range of anything else is the list of the pieces.
#include "applescript/evaluate/ElementPicker.h"

#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tabwright::applescript {

namespace {

using Form = ElementAccess::Form;

bool isTextElement(FourCharCode code) {
  return code == codes::item || code == codes::character || code == codes::word || code == codes::paragraph ||
         code == codes::textItem || isTextClass(code);
}

/// −1728 `Can’t get item 9 of {1}.`
ScriptError cannotGetElement(const ElementAccess& access, const ElementKey& key, const Value& container) {
  const std::string words = classWords(access.elementClass);
  const Term* term = languageTerminology().findCode(Term::Kind::className, access.elementClass.code);
  const std::string_view plural = term && !term->plural.empty() ? term->plural : words;
  return errors::cannotGet(
      fmt::format("{} of {}", stepSourceForm(*stepOf(access, key), {words, plural}), shortSourceForm(container)));
}

Value piece(const std::string& utf8, TextRange range) {
  return utf8.substr(range.offset, range.length);
}

} // namespace

std::shared_ptr<ObjectSpecifier> stepOf(const ElementAccess& access, const ElementKey& key) {
  auto step = std::make_shared<ObjectSpecifier>();
  step->form = access.form;
  step->desiredClass = access.elementClass.code;
  step->key = key.first;
  step->rangeEnd = key.last;
  // The source of `tab x` doesn't tell an index from a name: the value of x does.
  if (access.form == ElementAccess::Form::index && key.first.text() && !access.isIndexWritten)
    step->form = ObjectSpecifier::Form::name;
  return step;
}

Value ElementPicker::pick(const Value& container, const ElementAccess& access, const ElementKey& key) {
  if (const auto* text = container.get<Text>(); text && isTextElement(access.elementClass.code))
    return pickFromText(*text, access, key);
  // The common case, without a copy of the list.
  if (const auto* list = container.get<Value::ListPointer>(); list && access.elementClass.code == codes::item)
    return pickFrom((*list)->items, access, key, container);
  return pickFrom(candidates(container, access, key), access, key, container);
}

std::vector<Value> ElementPicker::candidates(const Value& container, const ElementAccess& access,
                                             const ElementKey& key) {
  std::vector<Value> elements;
  const FourCharCode code = access.elementClass.code;
  if (const auto* list = container.get<Value::ListPointer>()) {
    std::ranges::copy_if((*list)->items, std::back_inserter(elements),
                         [&](const Value& item) { return isKindOf(item, code); });
  } else if (const auto* text = container.get<Text>(); text && isTextElement(code)) {
    for (const TextRange range : pieces(*text, code))
      elements.push_back(piece(text->utf8(), range));
  } else {
    throw cannotGetElement(access, key, container);
  }
  return elements;
}

Value ElementPicker::pickFrom(const std::vector<Value>& elements, const ElementAccess& access, const ElementKey& key,
                              const Value& container) const {
  if (access.form == Form::every)
    return Value::list(elements);
  if (access.form == Form::range) {
    const auto [first, last] = positions(elements.size(), access, key, container);
    const auto at = [&](std::size_t index) { return elements.begin() + static_cast<std::ptrdiff_t>(index); };
    return Value::list({at(first), at(last) + 1});
  }
  return elements[position(elements.size(), access, key, container)];
}

std::size_t ElementPicker::position(std::size_t count, const ElementAccess& access, const ElementKey& key,
                                    const Value& container) const {
  std::int64_t index = 0;
  const auto size = static_cast<std::int64_t>(count);
  switch (access.form) {
  case Form::index:
    // Index 0 becomes −1, which is refused below.
    index = integerOf(key.first);
    index = index < 0 ? size + index : index - 1;
    break;
  case Form::middle:
    index = (size - 1) / 2;
    break;
  case Form::some:
    index = count == 0 ? -1
                       : std::clamp<std::int64_t>(static_cast<std::int64_t>(random_() * static_cast<double>(count)), 0,
                                                  size - 1);
    break;
  // Forms by name, by id and beside another element name nothing in a value.
  default:
    index = -1;
    break;
  }
  if (index < 0 || index >= size)
    throw cannotGetElement(access, key, container);
  return static_cast<std::size_t>(index);
}

// First and last position of a range, both included; the ends may come in either order.
std::pair<std::size_t, std::size_t> ElementPicker::positions(std::size_t count, const ElementAccess& access,
                                                             const ElementKey& key, const Value& container) const {
  const auto size = static_cast<std::int64_t>(count);
  const auto indexOf = [&](const Value& end) {
    // As in `position`, 0 comes out as −1 and is refused.
    const std::int64_t index = integerOf(end);
    return index < 0 ? size + index : index - 1;
  };
  const std::int64_t start = indexOf(key.first);
  const std::int64_t end = indexOf(key.last);
  if (std::min(start, end) < 0 || std::max(start, end) >= size)
    throw cannotGetElement(access, key, container);
  return {static_cast<std::size_t>(std::min(start, end)), static_cast<std::size_t>(std::max(start, end))};
}

// Valid until the next ones of this class are asked for.
const std::vector<TextRange>& ElementPicker::pieces(const Text& text, FourCharCode elementClass) {
  switch (elementClass) {
  case codes::word:
    return pieces_.pieces(text, PieceIndex::Kind::words);
  case codes::paragraph:
    return pieces_.pieces(text, PieceIndex::Kind::paragraphs);
  case codes::textItem: {
    std::vector<std::string> delimiters;
    const Value::ListPointer list = listOf(delimiters_);
    for (const Value& delimiter : list->items)
      delimiters.push_back(textOf(delimiter));
    return pieces_.pieces(text, PieceIndex::Kind::textItems, std::move(delimiters), attributes_);
  }
  default:
    return pieces_.pieces(text, PieceIndex::Kind::characters);
  }
}

std::optional<std::int64_t> ElementPicker::countPieces(const Text& text, FourCharCode elementClass) {
  if (elementClass == codes::character || elementClass == codes::item)
    return static_cast<std::int64_t>(characters_.count(text));
  // `count of text` of a text goes by what evaluating it gives.
  if (!isTextElement(elementClass) || isTextClass(elementClass))
    return {};
  return static_cast<std::int64_t>(pieces(text, elementClass).size());
}

Value ElementPicker::pickBetween(const Text& text, const ElementAccess& access, const End& fromEnd, const End& toEnd) {
  // Gives a copy of the range: the pieces of the other end may be of the same class, and take the place of these.
  const auto placeOf = [&](const End& end) {
    const std::vector<TextRange>& ranges = pieces(text, end.access.elementClass.code);
    return ranges[position(ranges.size(), end.access, end.key, Value(text))];
  };
  const TextRange from = placeOf(fromEnd);
  const TextRange to = placeOf(toEnd);
  const std::size_t start = std::min(from.offset, to.offset);
  const std::size_t end = std::max(from.offset + from.length, to.offset + to.length);
  const Text between(text.utf8().substr(start, end - start));
  // `text from … to …` is the stretch itself, of any other class its pieces; those at its ends may be cut.
  if (isTextClass(access.elementClass.code))
    return between;
  std::vector<Value> parts;
  for (const TextRange range : pieces(between, access.elementClass.code))
    parts.push_back(piece(between.utf8(), range));
  return Value::list(std::move(parts));
}

Value ElementPicker::pickFromText(const Text& text, const ElementAccess& access, const ElementKey& key) {
  const FourCharCode code = access.elementClass.code;
  const std::string& utf8 = text.utf8();
  if (isTextClass(code) && access.form == Form::every)
    return text;
  const bool isCharacters = code == codes::character || code == codes::item || isTextClass(code);
  // Characters are found by position, without a table of all of them.
  if (isCharacters && access.form != Form::every) {
    const std::size_t count = characters_.count(text);
    if (access.form != Form::range)
      return piece(utf8, characters_.character(text, position(count, access, key, Value(text))));
    const auto [first, last] = positions(count, access, key, Value(text));
    if (isTextClass(code)) {
      const std::size_t start = characters_.character(text, first).offset;
      const TextRange end = characters_.character(text, last);
      return piece(utf8, {start, end.offset + end.length - start});
    }
    std::vector<Value> parts;
    for (std::size_t index = first; index <= last; ++index)
      parts.push_back(piece(utf8, characters_.character(text, index)));
    return Value::list(std::move(parts));
  }

  const std::vector<TextRange>& ranges = pieces(text, code);
  if (access.form != Form::every && access.form != Form::range)
    return piece(utf8, ranges[position(ranges.size(), access, key, Value(text))]);
  std::size_t first = 0;
  std::size_t end = ranges.size();
  if (access.form == Form::range) {
    const auto [low, high] = positions(ranges.size(), access, key, Value(text));
    first = low;
    end = high + 1;
  }
  std::vector<Value> parts;
  parts.reserve(end - first);
  for (std::size_t index = first; index < end; ++index)
    parts.push_back(piece(utf8, ranges[index]));
  return Value::list(std::move(parts));
}

} // namespace tabwright::applescript
