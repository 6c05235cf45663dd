// The text becomes pieces of a literal and the placeholder behind it. Names that begin with two underscores, as private
// handlers do, are no placeholders: they hold small letters.
#include "platform/TextTemplate.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace tabwright::platform {
namespace {

constexpr std::string_view mark = "__";

bool isPlaceholderName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) { return (c >= 'A' && c <= 'Z') || c == '_'; });
}

} // namespace

TextTemplate::TextTemplate(std::string_view text) {
  // A text file ends with a line feed, and its text may go into the middle of another.
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
      // The second pair of underscores may open a placeholder itself.
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
  // Generated programs are large: they are put together in one piece of memory.
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

std::optional<TextTemplate::Parts> TextTemplate::match(std::string_view text, std::string_view wide) const {
  // From both ends towards `wide`: what it holds may contain any of the literals.
  const std::string& begin = pieces_.front().literal;
  const std::string& end = pieces_.back().literal;
  if (text.size() < begin.size() + end.size() || !text.starts_with(begin) || !text.ends_with(end))
    return std::nullopt;
  text = text.substr(begin.size(), text.size() - begin.size() - end.size());
  Parts parts;
  for (std::size_t piece = 0; pieces_[piece].placeholder != wide; ++piece) {
    const std::string& behind = pieces_[piece + 1].literal;
    const std::size_t at = text.find(behind);
    if (at == std::string_view::npos)
      return std::nullopt;
    parts[pieces_[piece].placeholder] = text.substr(0, at);
    text.remove_prefix(at + behind.size());
  }
  for (std::size_t piece = pieces_.size() - 2; pieces_[piece].placeholder != wide; --piece) {
    const std::string& before = pieces_[piece].literal;
    const std::size_t at = text.rfind(before);
    if (at == std::string_view::npos)
      return std::nullopt;
    parts[pieces_[piece].placeholder] = text.substr(at + before.size());
    text = text.substr(0, at);
  }
  parts[std::string(wide)] = text;
  return parts;
}

} // namespace tabwright::platform
