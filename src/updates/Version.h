#pragma once

#include <compare>
#include <string_view>

namespace tabwright::updates {

/// Tells which of two versions comes later. A version is read as numbers and words, parted by anything else; what
/// follows a plus sign doesn't count (Semantic Versioning 2.0.0, 10). The first parts that differ decide:
///
/// - numbers by their value, however long: 1.10 comes after 1.9;
/// - words by their letters: beta comes after alpha;
/// - a number comes after a word: 1.0.1 after 1.0b1.
///
/// If one version ends first, a word makes the other a pre-release, which comes before it (2.0rc1 before 2.0); a
/// number makes it a later one, but for zero, which changes nothing (1.0 is 1.0.0).
[[nodiscard]] std::strong_ordering compareVersions(std::string_view one, std::string_view other);

/// A version that means something: it begins with a digit, and is printable ASCII of at most 64 characters.
[[nodiscard]] bool isVersion(std::string_view text);

} // namespace tabwright::updates
