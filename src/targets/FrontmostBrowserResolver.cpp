#include "targets/FrontmostBrowserResolver.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/Scriptacular.h"
#include "engine/errors/AppleScriptRuntimeError.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tabwright::targets {

platform::Task<engine::TargetContext> FrontmostBrowserResolver::resolve(engine::Scriptacular& scriptacular) {
  const std::vector<TargetContext>& browsers = manager_.installedBrowsers();
  std::vector<std::string> ids;
  std::ranges::transform(browsers, std::back_inserter(ids), &TargetContext::id);

  const std::string id =
      co_await scriptacular.runScriptText<std::string>(engine::AppleScriptSnippets::frontmostScriptText(ids));
  // The script doesn't check the application behind the front one, so an id from outside the list may come back.
  const auto found = std::ranges::find(browsers, id, &TargetContext::id);
  if (found == browsers.end())
    throw platform::failure(engine::AppleScriptRuntimeError::frontAppIsNotABrowser);
  co_return *found;
}

} // namespace tabwright::targets
