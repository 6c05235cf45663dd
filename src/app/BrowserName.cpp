#include "app/BrowserName.h"

#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"

#include <fmt/format.h>

#include <vector>

namespace tabwright::app {

const platform::BrowserFacts& requireBrowser(const std::string& wanted, std::string_view purpose) {
  const platform::BrowserFacts* facts = platform::findBrowser(platform::lowercased(wanted));
  // Safari has a row in the table, but no program here.
  if (facts && !facts->executables.empty())
    return *facts;
  std::vector<std::string> names;
  for (const platform::BrowserFacts& row : platform::browserTable) {
    if (!row.executables.empty())
      names.emplace_back(row.shortName);
  }
  throw intents::UsageError(fmt::format("There is no browser “{}” {}. Choose one of: {}.{}", wanted, purpose,
                                        fmt::join(names, ", "), host::didYouMean(wanted, names, "")));
}

} // namespace tabwright::app
