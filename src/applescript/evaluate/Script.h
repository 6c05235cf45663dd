#pragma once

#include "applescript/evaluate/ScriptLayout.h"
#include "applescript/values/ScriptObject.h"

#include <memory>
#include <vector>

namespace tabwright::applescript {

/// A compiled script between its runs: tree, layouts, the script object that holds its properties, and what is common
/// to all script objects of it.
class Script {
public:
  Script(std::unique_ptr<SyntaxTree> tree);
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script();

  [[nodiscard]] const SyntaxTree& tree() const { return *tree_; }
  [[nodiscard]] const std::shared_ptr<ScriptObject>& object() const { return object_; }

  /// Makes a script object; it is emptied at the latest when this Script ends, since script objects may hold each
  /// other.
  [[nodiscard]] std::shared_ptr<ScriptObject> instantiate(const ScriptLayout& layout,
                                                          std::shared_ptr<ScriptObject> enclosing);

  /// The properties have got their first values.
  bool isLoaded = false;
  /// `AppleScript's text item delimiters`: a text, or a list of texts.
  Value textItemDelimiters = "";

private:
  std::unique_ptr<SyntaxTree> tree_;
  ScriptLayouts layouts_;
  std::vector<std::weak_ptr<ScriptObject>> instances_;
  std::size_t sweepAt_ = 64;
  std::shared_ptr<ScriptObject> object_;
};

} // namespace tabwright::applescript
