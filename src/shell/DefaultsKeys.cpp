#include "shell/DefaultsKeys.h"

#include "targets/SupportedBrowsers.h"

namespace tabwright::shell {

BrowserStates unknownBrowserStates() {
  BrowserStates states;
  for (const targets::TargetContext& browser : targets::supportedBrowsers())
    states.emplace(browser.id, BrowserState());
  return states;
}

} // namespace tabwright::shell
