#pragma once

#include "shell/LinkSections.h"
#include "shell/Links.h"

#include <vector>

namespace tabwright::shell {

// Labels are in the user's language and addresses whole; links whose place the build doesn't name are left out.

/// "Support & Help" of the Docs page, behind its button for feedback.
[[nodiscard]] std::vector<ExternalLink> supportLinks(const Endpoints& endpoints);

/// The two rows of the About page, behind the button of each.
struct AboutLinks {
  std::vector<ExternalLink> first;
  std::vector<ExternalLink> second;
};
[[nodiscard]] AboutLinks aboutLinks(const Endpoints& endpoints);

} // namespace tabwright::shell
