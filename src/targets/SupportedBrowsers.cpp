// The table of browsers in the form in which actions know them: ids in lower case.
#include "targets/SupportedBrowsers.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"

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
  for (const TargetContext& browser : supportedBrowsers()) {
    if (wanted == browser.id || wanted == platform::lowercased(browser.name) || wanted == shortNameOf(browser))
      return browser;
  }
  return std::nullopt;
}

std::string_view shortNameOf(const TargetContext& context) {
  if (context.id == engine::frontmostTargetContext().id)
    return frontmostShortName;
  const platform::BrowserFacts* facts = platform::findBrowser(context.id);
  return facts ? facts->shortName : std::string_view(context.id);
}

} // namespace tabwright::targets
