#pragma once

#include "intents/EntityDefinition.h"
#include "platform/JSONReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::browserdata {

/// An element of a page as an outline tells it, for pipes: `reference` alone names it to a later action. Texts are as
/// the page has them, on one line, without characters that can't be seen.
struct PageElementEntity {
  std::optional<std::string> reference; ///< such as "kqz12"; of elements to act on, until the page is loaded anew
  std::string role;                     ///< that of ARIA, but for a few of the outline's own, such as "frame"
  std::optional<std::string> name;      ///< the accessible name
  std::optional<std::string> value;     ///< of a field; of a password nothing but that there is one
  std::optional<std::vector<std::string>> states; ///< those that differ from the usual, such as "disabled"
  std::optional<std::string> url;                 ///< whole, of links and frames
  std::optional<std::int64_t> level;              ///< of headings
  std::int64_t depth = 0;                         ///< in the outline, from 0

  static PageElementEntity fromJSON(const platform::JSONReader& json);
  /// As in the outline's text: `button "Sign in" kqz12`.
  [[nodiscard]] std::string displayRepresentation() const;
  [[nodiscard]] static const intents::EntityDefinition<PageElementEntity>& definition();
};

/// The outline of a page: a text for people and agents, its elements for programs. A value: it holds what was shown
/// when the action ran.
struct PageOutlineEntity {
  std::string title;
  std::string url;
  std::string text; ///< a line for each thing; docs/outlines.md tells how they read
  std::vector<PageElementEntity> elements;
  std::int64_t leftOut = 0; ///< the lines beyond the bound on length

  /// Throws `platform::JSONMismatch`.
  static PageOutlineEntity fromJSON(const platform::JSONReader& json);
  /// The text.
  [[nodiscard]] static const intents::EntityDefinition<PageOutlineEntity>& definition();
};

} // namespace tabwright::browserdata
