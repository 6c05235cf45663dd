// The question goes to System Events by a script of its own, before the action's program is written: that program is
// made for one browser.
#include "targets/FrontmostBrowserResolver.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/Scriptacular.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/ScriptacularError.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tabwright::targets {

namespace {

using engine::ScriptacularError;

/// The lookup's own error speaks of processes of System Events, of which its user knows nothing.
platform::Notice nothingInFront() {
  return {
      {"FrontmostBrowser", "nothingInFront", std::nullopt},
      "No application is in front, so no browser is. Start one, as “tabwright browser chromium” does, or name the one "
      "that is meant with targetContext."};
}

} // namespace

platform::Task<engine::TargetContext> FrontmostBrowserResolver::resolve(engine::Scriptacular& scriptacular) {
  const std::vector<TargetContext>& browsers = manager_.installedBrowsers();
  std::vector<std::string> ids;
  std::ranges::transform(browsers, std::back_inserter(ids), &TargetContext::id);

  std::string id;
  try {
    id = co_await scriptacular.runScriptText<std::string>(engine::AppleScriptSnippets::frontmostScriptText(ids));
  } catch (const platform::CatalogueFailure<ScriptacularError>& failure) {
    // Others, such as a script that was stopped, are told as they are.
    if (failure.kind() != ScriptacularError::browserNotFound)
      throw;
    throw platform::failure(ScriptacularError::browserNotFound).causedBy(nothingInFront());
  }
  // The script doesn't check the application behind the front one, so an id from outside the list may come back.
  const auto found = std::ranges::find(browsers, id, &TargetContext::id);
  if (found == browsers.end())
    throw platform::failure(engine::AppleScriptRuntimeError::frontAppIsNotABrowser);
  co_return *found;
}

} // namespace tabwright::targets
