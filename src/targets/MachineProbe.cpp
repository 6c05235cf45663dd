#include "targets/MachineProbe.h"

#include "platform/BrowserTable.h"

#include <utility>

namespace tabwright::targets {

MachineProbe::MachineProbe(Applications applications, platform::RunningBrowsers browsers,
                           platform::InstallationPlaces places)
    : applications_(std::move(applications)), browsers_(std::move(browsers)), places_(std::move(places)) {}

std::vector<engine::TargetContext> MachineProbe::installedApplications() const {
  std::vector<engine::TargetContext> applications;
  for (const platform::BrowserFacts* facts : platform::findInstalledBrowsers(places_))
    applications.push_back({std::string(facts->id), std::string(facts->name)});
  return applications;
}

std::vector<RunningApplication> MachineProbe::runningApplications() const {
  if (applications_)
    return applications_();
  std::vector<RunningApplication> applications;
  for (const platform::RunningBrowser& browser : browsers_.findAll())
    applications.push_back({.bundleIdentifier = std::string(browser.facts->id),
                            .localizedName = std::string(browser.facts->name),
                            .process = browser.process,
                            .isFrontmost = applications.empty()});
  return applications;
}

} // namespace tabwright::targets
