#pragma once

#include <string>

namespace tabwright::intents {

/// A file as a value: a parameter's JSON document, or a result's rich text. It is held in memory whole and names no
/// file of the machine.
struct IntentFile {
  std::string data;     ///< its bytes
  std::string filename; ///< a plain name, without folders
  std::string type;     ///< media type or uniform type identifier: "application/json", "com.apple.rtfd"

  friend bool operator==(const IntentFile&, const IntentFile&) = default;
};

} // namespace tabwright::intents
