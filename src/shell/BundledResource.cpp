#include "shell/BundledResource.h"

#include "platform/Logger.h"
#include "tabwright_shellResources.h"

#include <fmt/core.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tabwright::shell {
namespace {

constexpr std::pair<std::string_view, std::string_view> files[]{
    {"ActionsLibraryLinks.json", resources::ActionsLibraryLinks_json},
    {"WhatsNew-Beta.md", resources::WhatsNew_Beta_md},
    {"actions.md", resources::actions_md},
    {"agents.md", resources::agents_md},
    {"workflows.md", resources::workflows_md},
};

} // namespace

const ResourceBundle& ResourceBundle::main() {
  static const ResourceBundle bundle{.read = [](std::string_view wanted) {
    for (const auto& [name, text] : files) {
      if (name == wanted)
        return Content{.text = std::string(text)};
    }
    return Content{.lack = Lack::file};
  }};
  return bundle;
}

void stopForDamagedBundle(std::string_view verb, std::string_view name, std::string_view preposition) {
  const std::string message = fmt::format("Failed to {} {} {} bundle.", verb, name, preposition);
  platform::Logger("Varn-Helpers").error("{}", message);
  std::fprintf(stderr, "tabwright: %s\n", message.c_str());
  std::abort();
}

} // namespace tabwright::shell
