#include "shell/PageLinks.h"

#include "shell/WindowText.h"

#include <string>
#include <string_view>

namespace tabwright::shell {
namespace {

void addLink(std::vector<ExternalLink>& links, std::string_view label, std::string_view site, std::string_view path) {
  if (!site.empty())
    links.push_back({.label = windowText(label), .url = std::string(site).append(path)});
}

} // namespace

std::vector<ExternalLink> supportLinks(const Endpoints& endpoints) {
  std::vector<ExternalLink> links;
  addLink(links, "docs.knowledge", endpoints.documentation, "");
  addLink(links, "docs.forum", endpoints.website, "/tabwright/forum");
  addLink(links, "docs.faq", endpoints.documentation, "/tabwright/faqs");
  return links;
}

AboutLinks aboutLinks(const Endpoints& endpoints) {
  AboutLinks links;
  addLink(links.first, "about.history", endpoints.website, "/tabwright/changes");
  addLink(links.first, "about.thanks", endpoints.website, "/thanks");
  addLink(links.first, "about.privacy", endpoints.website, "/privacy");
  addLink(links.second, "about.maker", endpoints.makersProfile, "");
  addLink(links.second, "about.website", endpoints.website, "/tabwright");
  return links;
}

} // namespace tabwright::shell
