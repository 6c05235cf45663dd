#include "targets/TargetContextManager.h"

#include "targets/SupportedBrowsers.h"

#include <algorithm>

namespace tabwright::targets {

const std::vector<TargetContext>& TargetContextManager::installedBrowsers() const {
  std::call_once(installedOnce_, [this] {
    for (std::size_t row = 0; row < platform::browserTable.size(); ++row) {
      if (probe_.isInstalled(platform::browserTable[row]))
        installedBrowsers_.push_back(supportedBrowsers()[row]);
    }
  });
  return installedBrowsers_;
}

std::vector<TargetContext> TargetContextManager::runningBrowsers() const {
  std::vector<TargetContext> browsers;
  for (std::size_t row = 0; row < platform::browserTable.size(); ++row) {
    if (probe_.isRunning(platform::browserTable[row]))
      browsers.push_back(supportedBrowsers()[row]);
  }
  std::ranges::sort(browsers, {}, &TargetContext::name); // all names begin with a capital: their case needs no lowering
  return browsers;
}

std::vector<TargetContextManager::AppSection> TargetContextManager::sections(Sections wanted) const {
  std::vector<AppSection> sections;
  if (wanted.dynamic)
    sections.push_back({"Dynamic", {engine::frontmostTargetContext()}});
  if (wanted.running)
    sections.push_back({"Running browsers", runningBrowsers()});
  if (wanted.installed)
    sections.push_back({"Installed browsers", installedBrowsers()});
  return sections;
}

std::vector<TargetContext> TargetContextManager::entities(std::span<const std::string> ids) const {
  std::vector<TargetContext> found;
  for (const AppSection& section : sections({})) {
    std::ranges::copy_if(section.items, std::back_inserter(found),
                         [&](const TargetContext& context) { return std::ranges::find(ids, context.id) != ids.end(); });
  }
  return found;
}

} // namespace tabwright::targets
