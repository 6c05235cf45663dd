#pragma once

#include "platform/JSONReader.h"
#include "platform/JSONText.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::shell {

/// The files that belong to the program, by name.
struct ResourceBundle {
  enum class Lack { none, file, data };
  struct Content {
    Lack lack = Lack::none; ///< `file`: there is none of this name; `data`: it can't be read
    std::string text = {};
  };
  std::function<Content(std::string_view name)> read;

  /// The files that are embedded in this program.
  [[nodiscard]] static const ResourceBundle& main();
};

/// Ends the process: the program's package is damaged. The sentence goes to the log and to standard error.
[[noreturn]] void stopForDamagedBundle(std::string_view verb, std::string_view name, std::string_view preposition);

/// The records of a JSON file of the program. A package without it, or with another one, is damaged: the program stops,
/// since no window could show what it should.
template <class T>
[[nodiscard]] T decodeResource(std::string_view name, const ResourceBundle& bundle = ResourceBundle::main()) {
  const ResourceBundle::Content content = bundle.read(name);
  if (content.lack == ResourceBundle::Lack::file)
    stopForDamagedBundle("locate", name, "in");
  if (content.lack == ResourceBundle::Lack::data)
    stopForDamagedBundle("load", name, "from");
  try {
    const boost::json::value json = platform::parseJSON(content.text);
    return platform::JSONReader(json).read<T>();
  } catch (const platform::Failure&) {
    stopForDamagedBundle("decode", name, "from");
  }
}

} // namespace tabwright::shell
