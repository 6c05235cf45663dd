#include "targets/MachineProbe.h"

#include "platform/BrowserTable.h"

#include <string>

namespace tabwright::targets {

std::vector<engine::TargetContext> MachineProbe::installedApplications() const {
  std::vector<engine::TargetContext> applications;
  for (const platform::BrowserFacts* facts : platform::findInstalledBrowsers(places_))
    applications.push_back({std::string(facts->id), std::string(facts->name)});
  return applications;
}

} // namespace tabwright::targets
