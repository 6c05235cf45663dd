#pragma once

#include "platform/BrowserTable.h"
#include "targets/BrowserProbe.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// A machine on which the browsers of these short names are installed and run, and whatever other applications a test
/// adds.
class ModelBrowserProbe final : public targets::BrowserProbe {
public:
  ModelBrowserProbe(std::set<std::string, std::less<>> installed, std::set<std::string, std::less<>> running)
      : installed(std::move(installed)), running(std::move(running)) {}

  std::set<std::string, std::less<>> installed;
  std::set<std::string, std::less<>> running;
  std::vector<engine::TargetContext> otherInstalled;
  std::vector<targets::RunningApplication> otherRunning; ///< before the browsers

  std::vector<engine::TargetContext> installedApplications() const override {
    std::vector<engine::TargetContext> applications = otherInstalled;
    for (const platform::BrowserFacts& facts : platform::browserTable) {
      if (installed.contains(facts.shortName))
        applications.push_back({std::string(facts.id), std::string(facts.name)});
    }
    return applications;
  }

  std::vector<targets::RunningApplication> runningApplications() const override {
    std::vector<targets::RunningApplication> applications = otherRunning;
    for (const platform::BrowserFacts& facts : platform::browserTable) {
      if (running.contains(facts.shortName))
        applications.push_back({.bundleIdentifier = std::string(facts.id), .localizedName = std::string(facts.name)});
    }
    return applications;
  }
};

} // namespace tabwright::testsupport
