#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::updates {

/// The archive of a version, as the feed announces it.
struct Enclosure {
  std::string url;
  std::uint64_t length = 0; ///< in bytes, at least 1
  std::string type;         ///< a media type, for information
  std::string signature;    ///< Ed25519 over the archive's bytes, in base64; empty where the feed gives none
};

/// One version of the program. Texts are UTF-8, without white space around them; empty ones were not given.
struct AppcastItem {
  std::string version;              ///< by which versions are compared
  std::string shortVersionString;   ///< as users know it
  std::string channel;              ///< empty: for everybody
  std::string minimumSystemVersion; ///< of the C library, which is what programs need of a system
  std::string releaseNotesLink;
  std::string description; ///< the notes themselves, as HTML
  std::string link;        ///< a page about the version
  std::optional<Enclosure> enclosure;
  bool isForOtherSystems = false; ///< all its archives are for others

  /// The version in words for users.
  [[nodiscard]] const std::string& shownVersion() const {
    return shortVersionString.empty() ? version : shortVersionString;
  }
};

using Appcast = std::vector<AppcastItem>;

/// The longest feed that is read, in bytes.
inline constexpr std::size_t longestAppcast = std::size_t{1} << 20;

/// Reads a feed: RSS 2.0 (rssboard.org/rss-specification) with the elements of appcasts, which are of the namespace
/// "http://www.andymatuschak.org/xml-namespaces/sparkle" under whatever prefix. Items stand in the order of the feed.
/// Unknown elements are passed over, as RSS asks for, and so is a known name in another namespace.
///
/// Throws `UpdateFault::malformedFeed`, with line and column, for what is no XML, holds a document type declaration (it
/// could define entities), is no RSS 2.0, lacks what an item needs, says something twice, or goes beyond the bounds of
/// length, depth and number of items.
[[nodiscard]] Appcast readAppcast(std::string_view document);

} // namespace tabwright::updates
