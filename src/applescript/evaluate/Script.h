#pragma once

#include "applescript/evaluate/ScriptLayout.h"
#include "applescript/values/ScriptObject.h"

#include <memory>
#include <vector>

namespace tabwright::applescript {

/// A compiled script between its runs: tree, layouts, the script object that holds its properties, and what is common
/// to all script objects of it. Serves one thread at a time.
class Script {
public:
  /// Resolves the tree, which must have parsed without an error.
  Script(std::unique_ptr<SyntaxTree> tree);
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script();

  [[nodiscard]] const SyntaxTree& tree() const { return *tree_; }
  /// The whole script; its variables are `nothing` until the script is loaded.
  [[nodiscard]] const std::shared_ptr<ScriptObject>& object() const { return object_; }

  /// Makes a script object, whose variables are `nothing`; it is emptied at the latest when this Script ends, since
  /// script objects may hold each other. `enclosing` is the script object around, null for the whole script.
  [[nodiscard]] std::shared_ptr<ScriptObject> instantiate(const ScriptLayout& layout,
                                                          std::shared_ptr<ScriptObject> enclosing);

  /// The properties have got their first values, which the first run gives them.
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
