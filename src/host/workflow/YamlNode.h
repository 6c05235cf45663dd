#pragma once

#include "host/workflow/Expression.h"
#include "host/workflow/Problem.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>
#include <yaml-cpp/yaml.h>

namespace tabwright::host::workflow {

/// The only document of a YAML text (https://yaml.org/spec/1.2.2/), or a thrown `Problem`: for text that is no YAML,
/// with a hint where the mistake is a common one, and for a second document. An empty text is a null node.
[[nodiscard]] YAML::Node parseYaml(std::string_view source);

/// The place of a node: all of a plain scalar, of others the first byte.
[[nodiscard]] Place placeOf(const YAML::Node& node);

/// The keys and values of a map, in its order. Throws a `Problem` for a key that is no text or stands there twice.
[[nodiscard]] std::vector<std::pair<YAML::Node, YAML::Node>> membersOf(const YAML::Node& map);

/// True when the node is a plain scalar that stands for null, or there is nothing.
[[nodiscard]] bool isNull(const YAML::Node& node);

/// "a list", "a map", "a text", "nothing": for complaints.
[[nodiscard]] const char* kindOf(const YAML::Node& node);

/// Turns nodes into expressions. A file whose aliases make it grow out of bounds (100,000 values), and one nested too
/// deep (64 levels), is a thrown `Problem`. One reader reads a whole file, as it counts all of it.
class ExpressionReader {
public:
  /// Plain scalars are typed by YAML's core schema, but whole numbers with zeros in front stay texts, which they mostly
  /// are (telephone numbers, postal codes). So do numbers that aren't decimal, and those that JSON doesn't have: 0x1F,
  /// .inf, .nan.
  [[nodiscard]] Expression read(const YAML::Node& node) { return read(node, 0); }

  /// A scalar's text as it stands, whatever it looks like. Others as above.
  [[nodiscard]] Expression readAsText(const YAML::Node& node);

private:
  [[nodiscard]] Expression read(const YAML::Node& node, int depth);

  std::size_t nodes_ = 0;
};

} // namespace tabwright::host::workflow
