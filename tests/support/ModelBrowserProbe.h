#pragma once

#include "targets/BrowserProbe.h"

#include <set>
#include <string>
#include <utility>

namespace tabwright::testsupport {

/// A machine on which the browsers of these short names are installed and run.
class ModelBrowserProbe final : public targets::BrowserProbe {
public:
  ModelBrowserProbe(std::set<std::string, std::less<>> installed, std::set<std::string, std::less<>> running)
      : installed(std::move(installed)), running(std::move(running)) {}

  std::set<std::string, std::less<>> installed;
  std::set<std::string, std::less<>> running;

  bool isInstalled(const platform::BrowserFacts& browser) const override {
    return installed.contains(browser.shortName);
  }
  bool isRunning(const platform::BrowserFacts& browser) const override { return running.contains(browser.shortName); }
};

} // namespace tabwright::testsupport
