// The table of browsers in the form in which actions know them: ids in lower case.
#include "targets/SupportedBrowsers.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"

#include <algorithm>
#include <string>

namespace tabwright::targets {

namespace {

constexpr std::string_view frontmostShortName = "frontmost";

} // namespace

// Made once: targets own their texts, which the table doesn't have in this form.
const std::vector<TargetContext>& supportedBrowsers() {
  static const std::vector<TargetContext> browsers = [] {
    std::vector<TargetContext> contexts;
    contexts.reserve(platform::browserTable.size());
    for (const platform::BrowserFacts& facts : platform::browserTable)
      contexts.push_back({platform::lowercased(facts.id), std::string(facts.name)});
    return contexts;
  }();
  return browsers;
}

std::optional<TargetContext> findTargetContext(std::string_view text) {
  const std::string wanted = platform::lowercased(text);
  TargetContext frontmost = engine::frontmostTargetContext();
  // The frontmost entry has no row in the table, and comes before all that have.
  if (wanted == frontmost.id || wanted == frontmost.name || wanted == frontmostShortName)
    return frontmost;
  const auto [name, profile] = platform::splitProfile(wanted);
  for (const TargetContext& browser : supportedBrowsers()) {
    if (name != browser.id && name != platform::lowercased(browser.name) && name != shortNameOf(browser))
      continue;
    if (name.size() == wanted.size())
      return browser;
    if (!isProfileName(profile))
      return std::nullopt;
    // As the user writes it where it is shown, and in lower case where it is compared.
    return TargetContext{browser.id + "/" + std::string(profile),
                         browser.name + "/" + std::string(platform::splitProfile(text).profile)};
  }
  return std::nullopt;
}

bool isProfileName(std::string_view text) {
  return !text.empty() && text.size() <= 100 && std::ranges::none_of(text, [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || c == '"' || c == '\\' || c == ':' || c == '/' ||
           c == '{' || c == '}';
  });
}

std::string_view shortNameOf(const TargetContext& context) {
  if (context.id == engine::frontmostTargetContext().id)
    return frontmostShortName;
  const bool hasProfile = !platform::splitProfile(context.id).profile.empty();
  const platform::BrowserFacts* facts = hasProfile ? nullptr : platform::findBrowser(context.id);
  return facts ? facts->shortName : std::string_view(context.id);
}

} // namespace tabwright::targets
