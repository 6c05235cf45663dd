#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tabwright::markdown {

/// The look of Markdown in windows: plain data, of no toolkit. Its texts are views of literals.
///
/// Looks add up: a code span in a heading has the heading's size and the code's letters.
struct Theme {
  /// The parts of a document that have a look of their own.
  enum class Role : std::uint8_t {
    heading1,
    heading2,
    heading3,
    heading4,
    heading5,
    heading6,
    quote,
    codeBlock,
    code,
    emphasis,
    strong,
    strikethrough,
    link,
    image, ///< the alternative text that stands for one
    html,  ///< markup that is shown as text
    tableHeader,
    border, ///< lines of tables, rules
  };
  static constexpr std::size_t roleCount = static_cast<std::size_t>(Role::border) + 1;

  /// Red, green and blue of sRGB, opaque.
  struct Colour {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
  };

  /// A colour for windows with dark letters on a light ground, and one for the others.
  struct ColourPair {
    Colour light;
    Colour dark;
  };

  /// A row of the theme. Members that say nothing leave what the place around has.
  struct Look {
    Role role;
    int size = 100; ///< per cent of the window's letters
    bool isBold = false;
    bool isItalic = false;
    bool isUnderlined = false;
    bool isStruckThrough = false;
    bool isFixedPitch = false;
    std::optional<ColourPair> colour = std::nullopt;     ///< none: as what it stands in
    std::optional<ColourPair> background = std::nullopt; ///< none: as what it stands in
  };

  /// Distances in windows, in logical pixels.
  struct Spacing {
    int paragraph;    ///< below a paragraph, list, quote, table or code block
    int headingAbove; ///< and `paragraph` below it
    int quoteIndentation;
    int cellPadding;
  };

  /// The boxes of tasks.
  /// Characters before the text of a task, for windows without boxes to tick.
  struct Symbols {
    std::string_view unchecked;
    std::string_view checked;
  };

  /// One for each role, and none twice: checked when the theme is compiled.
  std::array<Look, roleCount> looks; ///< in the order of `Role`
  Spacing spacing;
  Symbols symbols;

  /// In constant time: `looks` stands in the order of `Role`.
  [[nodiscard]] constexpr const Look& look(Role role) const { return looks[static_cast<std::size_t>(role)]; }

  /// The role of a heading of level 1 to 6.
  [[nodiscard]] static constexpr Role heading(int level) { return static_cast<Role>(level - 1); }
};

/// The one theme of all windows.
extern const Theme markdownTheme;

} // namespace tabwright::markdown
