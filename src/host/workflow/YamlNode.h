#pragma once

#include "host/workflow/Expression.h"
#include "host/workflow/Problem.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>
#include <yaml-cpp/yaml.h>

namespace tabwright::host::workflow {

/// The only document of a YAML text, or a thrown `Problem`.
[[nodiscard]] YAML::Node parseYaml(std::string_view source);

[[nodiscard]] Place placeOf(const YAML::Node& node);

/// The keys and values of a map, in its order. Throws a `Problem` for a key that is no text or stands there twice.
[[nodiscard]] std::vector<std::pair<YAML::Node, YAML::Node>> membersOf(const YAML::Node& map);

/// True when the node is a plain scalar that stands for null, or there is nothing.
[[nodiscard]] bool isNull(const YAML::Node& node);

/// "a list", "a map", "a text", "nothing": for complaints.
[[nodiscard]] const char* kindOf(const YAML::Node& node);

/// Turns nodes into expressions. A file whose aliases make it grow out of bounds, and one nested too deep, is a thrown
/// `Problem`.
class ExpressionReader {
public:
  /// Plain scalars are typed by YAML's core schema, but whole numbers with zeros in front stay texts, which they mostly
  /// are (telephone numbers, postal codes).
  [[nodiscard]] Expression read(const YAML::Node& node) { return read(node, 0); }

  /// A scalar's text as it stands, whatever it looks like. Others as above.
  [[nodiscard]] Expression readAsText(const YAML::Node& node);

private:
  [[nodiscard]] Expression read(const YAML::Node& node, int depth);

  std::size_t nodes_ = 0;
};

} // namespace tabwright::host::workflow
