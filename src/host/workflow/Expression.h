#pragma once

#include "host/workflow/Problem.h"

#include <boost/json/value.hpp>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::host::workflow {

/// The values that steps have given so far, by name.
using Variables = std::map<std::string, boost::json::value, std::less<>>;

/// The way that stands in `${…}`: a variable, and perhaps a way into its value. A member is a key of an object, or the
/// index of an item of a list, from 0; "count" is the number of items of a list. A text that holds an object or a list
/// as JSON, such as the result of JavaScript, can be gone into like these.
struct Path {
  /// Neither a variable nor a member is empty: each has the characters of `isVariableName`.
  std::string variable;
  std::vector<std::string> members;

  /// As it is written, without `${}`.
  [[nodiscard]] std::string text() const;
};

/// A value of a workflow's file, in which paths stand for values that are known only when the step runs.
///
/// A text that is one path and nothing else has that value, of whatever kind; in a longer text paths are replaced by
/// texts, values other than texts by their JSON. `$${` stands for `${` itself.
struct Expression {
  using Piece = std::variant<std::string, Path>;
  /// At least one piece is a path; plain pieces aren't empty and no two of them follow each other.
  struct Text {
    std::vector<Piece> pieces;
  };
  struct List {
    std::vector<Expression> items;
  };
  /// In the order of the file; no name stands there twice.
  struct Map {
    std::vector<std::pair<std::string, Expression>> members;
  };

  /// A value without paths, or one that holds some.
  std::variant<boost::json::value, Text, List, Map> form;
  /// Of the value in the file; complaints about what paths come to show it.
  Place place;
};

/// True when a variable can have that name: ASCII letters, digits, "_" and "-".
[[nodiscard]] bool isVariableName(std::string_view name);

/// The expression of a text: "See ${tab.title}" is two pieces. Throws `Problem` for an opening `${` without its end,
/// and for what can't be a path. `place` is that of the whole text.
[[nodiscard]] Expression textExpression(std::string_view text, Place place);

/// True for a value that is known only when the step runs.
[[nodiscard]] bool hasPaths(const Expression& expression);
/// Calls `visit` with each path, in the order of the file, and the place of the text that it stands in.
void forEachPath(const Expression& expression, const std::function<void(const Path&, Place)>& visit);

/// True for a text in which the file's writer put "@" in front: that stands for the content of a file. A value
/// that begins so by what a path brings is not meant.
[[nodiscard]] bool beginsWithAt(const Expression& expression);

/// The value now, of no more than `most` bytes. Throws `Problem` for a larger one, for a variable that no step has
/// given, and for a way that doesn't exist.
[[nodiscard]] boost::json::value evaluate(const Expression& expression, const Variables& variables,
                                          std::size_t most = std::size_t{256} << 20);

/// As much of a text, on one line of at most 80 cells, as tells which one it is.
[[nodiscard]] std::string quotedBriefly(const std::string& text);

/// A value as text: texts as they are, others as JSON.
[[nodiscard]] std::string textOf(const boost::json::value& value);

/// As it would be evaluated, but with those paths left as they are written whose variable isn't there. For people:
/// lists and maps come as they look in YAML, not as JSON. Throws `Problem` for a way that doesn't exist in a variable
/// that is there.
[[nodiscard]] std::string preview(const Expression& expression, const Variables& variables);

} // namespace tabwright::host::workflow
