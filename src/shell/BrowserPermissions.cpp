#include "shell/BrowserPermissions.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/Scriptacular.h"
#include "platform/Logger.h"
#include "shell/Varn.h"
#include "targets/SupportedBrowsers.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tabwright::shell {
namespace {

const platform::Logger permissionLog("BrowserPermissions");

platform::Task<AssistiveAccessStatus> statusAfterTrial(const engine::ScriptacularServices& scripts, std::string id) {
  auto trial = engine::Scriptacular::forOnboarding(scripts);
  std::string text = engine::AppleScriptSnippets::permissionTriggerScript(id, Varn::App::name);
  try {
    static_cast<void>(co_await trial.runScriptText<bool>(std::move(text)));
    co_return AssistiveAccessStatus::granted;
  } catch (const platform::Failure& failure) {
    permissionLog.debug("The trial of {} failed: {}", id, failure.errorDescription());
  }
  co_return AssistiveAccessStatus::denied;
}

} // namespace

platform::Task<void> BrowserPermissions::requestBrowserPermissions() {
  UserDefaultsManager& settings = surroundings_.settings;
  settings.resetBrowserStates();
  const std::vector<engine::TargetContext>& installed = surroundings_.targets.installedBrowsers();
  for (const engine::TargetContext& browser : targets::supportedBrowsers()) {
    const bool isInstalled = std::ranges::any_of(installed, [&](const auto& each) { return each.id == browser.id; });
    if (!isInstalled) {
      settings.setBrowserStatus(browser.id, AssistiveAccessStatus::appNotInstalled);
      continue;
    }
    settings.setBrowserStatus(browser.id, AssistiveAccessStatus::requesting);
    const AssistiveAccessStatus status = co_await statusAfterTrial(surroundings_.scripts, browser.id);
    settings.setBrowserStatus(browser.id, status);
  }
  settings.recomputeAssistiveAccessGranted();
}

} // namespace tabwright::shell
