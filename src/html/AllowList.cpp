// One look-up by tag serves the elements, their attributes and the attributes' protocols.
#include "html/AllowList.h"

#include "platform/AsciiCase.h"

#include <algorithm>

namespace tabwright::html {

AllowList& AllowList::addTags(const std::vector<std::string>& tags) {
  for (const std::string& tag : tags)
    tags_[tag].isAllowed = true;
  return *this;
}

AllowList& AllowList::addAttributes(const std::string& tag, const std::vector<std::string>& attributes) {
  Rules& rules = tags_[tag];
  rules.isAllowed = true;
  rules.attributes.insert(attributes.begin(), attributes.end());
  return *this;
}

AllowList& AllowList::addProtocols(const std::string& tag, const std::string& attribute,
                                   const std::vector<std::string>& protocols) {
  tags_[tag].protocols[attribute].insert(protocols.begin(), protocols.end());
  return *this;
}

bool AllowList::allowsTag(std::string_view tag) const {
  const auto rules = tags_.find(tag);
  return rules != tags_.end() && rules->second.isAllowed;
}

std::optional<std::string_view> AllowList::allowedValue(std::string_view tag, std::string_view name,
                                                        std::string_view value) const {
  const auto rules = tags_.find(tag);
  if (rules == tags_.end() || !rules->second.attributes.contains(name))
    return std::nullopt;
  const auto protocols = rules->second.protocols.find(name);
  if (protocols == rules->second.protocols.end())
    return value;
  const auto isBlank = [](char character) { return static_cast<unsigned char>(character) <= ' '; };
  while (!value.empty() && isBlank(value.front()))
    value.remove_prefix(1);
  while (!value.empty() && isBlank(value.back()))
    value.remove_suffix(1);
  const bool isAllowed = std::ranges::any_of(protocols->second, [&](const std::string& protocol) {
    // Without a colon there is no protocol: relative addresses are not let through where protocols are listed.
    return value.size() > protocol.size() && value[protocol.size()] == ':' &&
           platform::equalIgnoringCase(value.substr(0, protocol.size()), protocol);
  });
  return isAllowed ? std::optional(value) : std::nullopt;
}

} // namespace tabwright::html
