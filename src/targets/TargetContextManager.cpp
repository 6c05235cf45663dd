// Every bundle identifier is put into lower case where it enters, so that identifiers are compared as they are.
// Installed applications are a matter of files and looked for once; those that run change under the user's hands and
// are asked for anew each time. Both are put in order here, since a probe's order is its own.
#include "targets/TargetContextManager.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"
#include "platform/CaseFolding.h"
#include "platform/InstalledApplications.h"
#include "platform/Whitespace.h"
#include "targets/SupportedBrowsers.h"

#include <algorithm>
#include <utility>

namespace tabwright::targets {

namespace {

/// An ordered set: by name ignoring case, of equal values the first.
std::vector<TargetContext> orderedByName(const std::vector<TargetContext>& contexts) {
  const auto key = [](const TargetContext& context) { return platform::caseFolded(context.name); };
  std::vector<TargetContext> set;
  for (const TargetContext& context : contexts) {
    // Sets are small, so a search is a walk.
    if (std::ranges::find(set, context) == set.end())
      set.insert(std::ranges::upper_bound(set, key(context), {}, key), context);
  }
  return set;
}

} // namespace

std::optional<TargetContext> targetContextOf(const RunningApplication& application) {
  if (platform::isBlank(application.bundleIdentifier) || platform::isBlank(application.localizedName))
    return std::nullopt;
  return TargetContext{platform::lowercased(application.bundleIdentifier), application.localizedName};
}

void TargetContextManager::findInstalled() const {
  std::call_once(installedOnce_, [this] {
    std::vector<TargetContext> applications = probe_.installedApplications();
    for (TargetContext& application : applications)
      application.id = platform::lowercased(application.id);
    installedApps_ = orderedByName(applications);
    std::ranges::copy_if(supportedBrowsers(), std::back_inserter(installedBrowsers_),
                         // By name too: a browser under another name is another target.
                         [this](const TargetContext& browser) {
                           return std::ranges::find(installedApps_, browser) != installedApps_.end();
                         });
  });
}

const std::vector<TargetContext>& TargetContextManager::installedApps() const {
  findInstalled();
  return installedApps_;
}

const std::vector<TargetContext>& TargetContextManager::installedBrowsers() const {
  findInstalled();
  return installedBrowsers_;
}

std::vector<TargetContext> TargetContextManager::running(bool areBrowsers) const {
  std::vector<TargetContext> applications;
  for (const RunningApplication& application : probe_.runningApplications()) {
    std::optional<TargetContext> context = targetContextOf(application);
    if (!context)
      continue;
    // By id alone: the system may show a browser under a name in the user's language.
    const auto known = std::ranges::find(supportedBrowsers(), context->id, &TargetContext::id);
    if ((known != supportedBrowsers().end()) == areBrowsers)
      applications.push_back(std::move(*context));
  }
  return orderedByName(applications);
}

std::vector<TargetContext> TargetContextManager::runningBrowsers() const {
  return running(true);
}

std::vector<TargetContext> TargetContextManager::otherApplications() const {
  return running(false);
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

std::optional<RunningApplication> TargetContextManager::findApplication(std::string_view id) const {
  std::vector<RunningApplication> applications = probe_.runningApplications();
  const auto first = [&](auto fits) { return std::ranges::find_if(applications, fits); };
  if (id == engine::frontmostTargetContext().id) {
    const auto front = first(&RunningApplication::isFrontmost);
    return front != applications.end() ? std::optional(std::move(*front)) : std::nullopt;
  }
  id = platform::splitProfile(id).browser; // profiles of one browser are one application
  auto found = first([&](const RunningApplication& each) { return platform::lowercased(each.bundleIdentifier) == id; });
  const auto isCalledSo = [&](const RunningApplication& each) {
    return platform::equalIgnoringCase(platform::shortName(each.bundleIdentifier), id) ||
           platform::equalIgnoringCase(each.localizedName, id);
  };
  // A name that two applications share means neither.
  if (found == applications.end() && !id.empty() && std::ranges::count_if(applications, isCalledSo) == 1)
    found = first(isCalledSo);
  return found != applications.end() ? std::optional(std::move(*found)) : std::nullopt;
}

} // namespace tabwright::targets
