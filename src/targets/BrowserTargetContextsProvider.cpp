// The text of a choice is what a user may type for it, so it is the shortest that is read back as the same target; the
// value is the whole target, for callers that pass JSON.
#include "targets/BrowserTargetContextsProvider.h"

#include "targets/SupportedBrowsers.h"
#include "targets/TargetContextValue.h"

#include <string>

namespace tabwright::targets {

namespace {

intents::Option optionOf(const TargetContext& context) {
  return {.value = intents::ValueTraits<TargetContext>::toJson(context),
          .title = context.name,
          .text = std::string(shortNameOf(context))};
}

} // namespace

std::vector<intents::OptionSection> BrowserTargetContextsProvider::results() const {
  std::vector<intents::OptionSection> collection;
  for (const TargetContextManager::AppSection& section : manager_.sections({})) {
    intents::OptionSection& options = collection.emplace_back(section.label);
    for (const TargetContext& context : section.items)
      options.options.push_back(optionOf(context));
  }
  return collection;
}

std::optional<intents::Option> BrowserTargetContextsProvider::defaultResult() const {
  return optionOf(engine::frontmostTargetContext());
}

std::vector<intents::OptionSection> ApplicationTargetsProvider::results() const {
  std::vector<intents::OptionSection> collection = browsers_.results();
  intents::OptionSection& others = collection.emplace_back("Running applications");
  for (const TargetContext& context : manager_.otherApplications())
    others.options.push_back(optionOf(context));
  return collection;
}

std::vector<intents::OptionSection> SupportedBrowsersProvider::results() const {
  intents::OptionSection section;
  // First, as it is the default.
  section.options.push_back(optionOf(engine::frontmostTargetContext()));
  for (const TargetContext& browser : supportedBrowsers())
    section.options.push_back(optionOf(browser));
  return {std::move(section)};
}

std::optional<intents::Option> SupportedBrowsersProvider::defaultResult() const {
  return optionOf(engine::frontmostTargetContext());
}

} // namespace tabwright::targets
