#pragma once

#include "applescript/values/Value.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::applescript {

struct ScriptLayout;

/// A script as a value: the whole script, or what `script … end script` makes each time it is reached.
///
/// Holds the values of the properties and globals; their names and the handlers are the layout's, which belongs to the
/// compiled Script. So a script object is of use only while that Script lives, which also empties it at its end. Made
/// by Script::instantiate; belongs to the thread of the run.
class ScriptObject {
public:
  /// `name` is empty for a script without one; all `variables` begin as `nothing`.
  ScriptObject(const ScriptLayout& layout, std::string name, std::size_t variables,
               std::shared_ptr<ScriptObject> enclosing);
  ~ScriptObject() { clear(); }
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

  [[nodiscard]] const ScriptLayout& layout() const { return layout_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  /// The script object inside whose text this one stands; null for the whole script.
  [[nodiscard]] const std::shared_ptr<ScriptObject>& enclosing() const { return enclosing_; }

  /// By index of the layout; `nothing` where not defined yet.
  std::vector<Value> variables;
  /// The receiver of messages that this one has no handler for; `nothing` without a `parent` property. May be any
  /// value; only script objects have handlers.
  Value parent = Value::nothing();

  /// The script object of `parent`, null when it is none. Valid until `parent` changes.
  [[nodiscard]] ScriptObject* parentScript() const;
  /// `«script NAME»`, or `«script»`.
  [[nodiscard]] std::string description() const;
  /// Lets go of all values, so that script objects that hold each other can end. All variables are `nothing` then.
  void clear();

private:
  const ScriptLayout& layout_;
  std::string name_;
  std::shared_ptr<ScriptObject> enclosing_;
};

} // namespace tabwright::applescript
