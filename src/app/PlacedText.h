#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::app {

/// A complaint about a stretch of a text file, as compilers show it:
///
///     NAME:LINE:COLUMN: SENTENCE
///     the line
///          ^^^
///
/// `offset` and `length` count bytes; one behind the text's end means the end. What is missing at the end is shown
/// behind the last words. Lines end at LF, CR or CR LF, and columns count characters, from 1.
[[nodiscard]] std::string placedText(const std::string& name, std::string_view source, std::size_t offset,
                                     std::size_t length, std::string_view sentence);

} // namespace tabwright::app
