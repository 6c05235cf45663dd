#pragma once

#include <string>
#include <string_view>

namespace tabwright::markdown {

/// The Markdown text with what would cost the parser more than linear time or memory made harmless. No visible
/// character is lost:
///
/// - Quote and list markers that stand more than 128 bytes from the start of their line nest no further; they are text.
///   (The parser visits all open blocks for each blank line.)
/// - A delimiter row of more than 128 columns starts no table.
/// - A paragraph, table or any other run of lines without a blank line or a new list item ends after 32 KiB, where a
///   missing cell of a table counts as a byte; what follows begins a new one. (Brackets, angle brackets and addresses
///   that don't close take quadratic time within one paragraph, and short rows are filled up to the table's width.)
///
/// The result may hold the mark U+FDD0 in places; `withoutMarks` takes it out of each text that comes from the parser.
[[nodiscard]] std::string bounded(std::string_view markdown);

/// The text without the marks that `bounded` has set.
[[nodiscard]] std::string withoutMarks(std::string_view text);

} // namespace tabwright::markdown
