// Any words behind `tabwright run ACTION`: they are read into the action's parameters, or refused with a sentence. The
// first byte is the action, line feeds part the words.
#include "actions/ActionFrame.h"
#include "app/Composition.h"
#include "app/ParameterArguments.h"
#include "host/ParameterReader.h"
#include "intents/UsageError.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace tabwright;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const app::Composition composition;
  static const std::vector<std::string> names = composition.catalogue().names();
  if (size == 0)
    return 0;
  const std::string& name = names[data[0] % names.size()];
  std::vector<std::string> words{""};
  for (const char character : std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1)) {
    if (character == '\n')
      words.emplace_back();
    else if (character != '\0') // which no word holds
      words.back() += character;
  }
  try {
    const app::ParameterArguments arguments = app::parseArguments(composition.catalogue().declaration(name), words);
    host::readParameters(*composition.catalogue().make(name), arguments.parameters);
  } catch (const intents::UsageError& refusal) {
    if (refusal.errorDescription().empty())
      std::abort();
  }
  return 0;
}
