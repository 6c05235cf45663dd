#include "shell/LinkSections.h"

namespace tabwright::shell {

ExternalLink ExternalLink::fromJSON(const platform::JSONReader& json) {
  return {.label = json.require<std::string>("label"), .url = json.require<std::string>("url")};
}

ExternalLinkSection ExternalLinkSection::fromJSON(const platform::JSONReader& json) {
  return {.label = json.require<std::string>("label"), .links = json.require<std::vector<ExternalLink>>("links")};
}

} // namespace tabwright::shell
