#pragma once

#include <cstdint>
#include <string>

namespace tabwright::browserdata {

/// The look of a run of characters, and the link of the document's `LinkTable` that it belongs to.
struct CharacterFormat {
  /// Combined as bits.
  enum Style : std::uint16_t {
    plain = 0,
    bold = 1 << 0,
    italic = 1 << 1,
    underlined = 1 << 2,
    struckOut = 1 << 3,
    /// This and `raised` exclude each other, see `add`.
    lowered = 1 << 4,
    raised = 1 << 5,
    /// The second font of the document.
    fixedPitch = 1 << 6,
    /// On the ground of marked text.
    highlighted = 1 << 7,
    /// In the colour of links; the underline is a style of its own.
    linkColoured = 1 << 8,
  };

  std::uint16_t styles = plain; ///< of `Style`
  std::uint32_t link = 0;       ///< 0: none

  /// Adds styles. Raised text lowered again is lowered only, and the other way round.
  void add(std::uint16_t more);

  friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

/// Appends the control words of the styles to a group that was just opened, without the blank that ends the last one:
/// for a run from right to left the words of complex scripts after those of others, as readers apply the last
/// direction that they meet to the text.
void appendControlWords(std::string& out, std::uint16_t styles, bool isRightToLeft);

} // namespace tabwright::browserdata
