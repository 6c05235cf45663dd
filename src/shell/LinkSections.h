#pragma once

#include "platform/JSONReader.h"

#include <string>
#include <vector>

namespace tabwright::shell {

/// A link to a page of the documentation.
struct ExternalLink {
  std::string label;
  std::string url;
  friend auto operator<=>(const ExternalLink&, const ExternalLink&) = default;

  static ExternalLink fromJSON(const platform::JSONReader& json);
};

/// Links under a heading, in the order in which they are shown.
struct ExternalLinkSection {
  std::string label;
  std::vector<ExternalLink> links;
  friend auto operator<=>(const ExternalLinkSection&, const ExternalLinkSection&) = default;

  static ExternalLinkSection fromJSON(const platform::JSONReader& json);
};

} // namespace tabwright::shell
