// The text becomes pieces of a literal and the placeholder behind it. Names that begin with two underscores, as private
// handlers do, are no placeholders: they hold small letters.
#include "engine/TextTemplate.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace tabwright::engine {
namespace {

constexpr std::string_view mark = "__";

bool isPlaceholderName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) { return (c >= 'A' && c <= 'Z') || c == '_'; });
}

} // namespace

TextTemplate::TextTemplate(std::string_view text) {
  if (text.ends_with('\n'))
    text.remove_suffix(1);
  std::size_t literalStart = 0;
  std::size_t at = text.find(mark);
  while (at != std::string_view::npos) {
    const std::size_t nameStart = at + mark.size();
    const std::size_t nameEnd = text.find(mark, nameStart);
    if (nameEnd == std::string_view::npos)
      break;
    const std::string_view name = text.substr(nameStart, nameEnd - nameStart);
    if (!isPlaceholderName(name)) {
      at = text.find(mark, nameStart);
      continue;
    }
    pieces_.push_back({std::string(text.substr(literalStart, at - literalStart)), std::string(name)});
    literalStart = nameEnd + mark.size();
    at = text.find(mark, literalStart);
  }
  pieces_.push_back({std::string(text.substr(literalStart)), {}});
}

std::string TextTemplate::fill(std::initializer_list<Value> values) const {
  const auto valueOf = [values](const std::string& placeholder) {
    const auto* const found = std::ranges::find(values, placeholder, &Value::placeholder);
    if (found == values.end())
      throw std::logic_error("no value for the placeholder " + placeholder);
    return found->text;
  };
  std::size_t size = 0;
  for (const Piece& piece : pieces_)
    size += piece.literal.size() + (piece.placeholder.empty() ? 0 : valueOf(piece.placeholder).size());
  std::string filled;
  filled.reserve(size);
  for (const Piece& piece : pieces_) {
    filled += piece.literal;
    if (!piece.placeholder.empty())
      filled += valueOf(piece.placeholder);
  }
  return filled;
}

} // namespace tabwright::engine
