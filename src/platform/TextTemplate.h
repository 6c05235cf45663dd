#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::platform {

/// A text with placeholders: words of capitals and single underscores between double underscores, such as `__TAB_ID__`.
///
///     const TextTemplate greeting("Hello __NAME__!\n");
///     greeting.fill({{"NAME", "__NAME__"}})            // Hello __NAME__!
///
/// The text is cut up once, so filling is one pass of copying, and what is filled in is never searched for
/// placeholders.
class TextTemplate {
public:
  /// Both are read during `fill` alone.
  struct Value {
    std::string_view placeholder; ///< without its double underscores
    std::string_view text;
  };

  /// One line feed at the end of `text` closes the file it comes from and is left out.
  explicit TextTemplate(std::string_view text);

  /// The text with every placeholder replaced. A placeholder without a value is a `std::logic_error`; a value without
  /// placeholder has no effect.
  [[nodiscard]] std::string fill(std::initializer_list<Value> values) const;

  /// The parts of a text at the placeholders, by their names. Keys are names without their double underscores, as in
  /// `Value`.
  using Parts = std::map<std::string, std::string_view>;
  /// The parts of a text that may have been filled like this; nothing for any other text. The one placeholder `wide`
  /// may hold anything: those before it are as short as can be, and so are those behind it. Each stands in the text
  /// once. `wide` names a placeholder of this template. The parts are views into `text`.
  [[nodiscard]] std::optional<Parts> match(std::string_view text, std::string_view wide) const;

private:
  struct Piece {
    std::string literal;
    std::string placeholder; // behind the literal; empty in the last piece
  };
  std::vector<Piece> pieces_;
};

} // namespace tabwright::platform
