#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::html {

/// The elements, attributes by tag, and protocols of addresses in attributes that a cleaner lets through.
///
///     AllowList list;
///     list.addTags({"a", "b"}).addAttributes("a", {"href"}).addProtocols("a", "href", {"https"});
///
/// A fresh list lets nothing through. All names are in lower case.
class AllowList {
public:
  /// Lets these elements through, without attributes. The functions that add can be chained, and adding again is
  /// harmless.
  AllowList& addTags(const std::vector<std::string>& tags);

  /// Lets through the tag, too.
  AllowList& addAttributes(const std::string& tag, const std::vector<std::string>& attributes);

  /// From now on that attribute of that tag is let through only with a value that begins with one of its protocols and
  /// a colon, in either case. Lets through neither the tag nor the attribute by itself.
  AllowList& addProtocols(const std::string& tag, const std::string& attribute,
                          const std::vector<std::string>& protocols);

  /// True for tags that were added by themselves or with attributes.
  [[nodiscard]] bool allowsTag(std::string_view tag) const;
  /// The value that the attribute is let through with; nothing for one that isn't. An address with protocols loses the
  /// blanks and control characters around it, which no browser reads (https://url.spec.whatwg.org/, basic URL parser).
  [[nodiscard]] std::optional<std::string_view> allowedValue(std::string_view tag, std::string_view name,
                                                             std::string_view value) const;

private:
  using Names = std::set<std::string, std::less<>>;
  /// The rules of one tag. A tag that only has protocols isn't allowed itself.
  struct Rules {
    bool isAllowed = false;
    Names attributes;
    std::map<std::string, Names, std::less<>> protocols; // by attribute
  };
  std::map<std::string, Rules, std::less<>> tags_;
};

} // namespace tabwright::html
