#include "host/Catalogue.h"

#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"

namespace tabwright::host {

std::vector<std::string> Catalogue::names() const {
  std::vector<std::string> names;
  for (const actions::ActionEntry& entry : actions::actionList())
    names.emplace_back(entry.name);
  return names;
}

std::unique_ptr<actions::ActionFrame> Catalogue::make(std::string_view name) const {
  std::string_view shortName = name;
  constexpr std::string_view prefix = actions::ActionFrame::typeNamePrefix;
  if (platform::equalIgnoringCase(shortName.substr(0, prefix.size()), prefix))
    shortName.remove_prefix(prefix.size());
  for (const actions::ActionEntry& entry : actions::actionList()) {
    if (platform::equalIgnoringCase(entry.name, shortName))
      return entry.make(services_);
  }
  throw intents::UsageError("There is no action \"" + std::string(name) + "\"." +
                            didYouMean(shortName, names(), " `tabwright actions` lists them all."));
}

} // namespace tabwright::host
