#pragma once

#include "applescript/syntax/Tree.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabwright::applescript {

/// The shape of the script objects that a script's text makes: names of their variables, handlers, and how the
/// variables get their first values. Points into the tree.
struct ScriptLayout {
  struct VariableName {
    Label label;
    /// Properties, scripts in the script, and names that the script itself declares `global` are seen by its handlers
    /// without further ado; the variables of its run handler only where a handler declares them.
    bool isSeenByHandlers = false;
  };
  /// A property or a script in the script, in the order written: what makes the first value of a variable.
  struct Initializer {
    int index = 0;
    const Expression* value = nullptr;        ///< of a property
    const ScriptDefinition* script = nullptr; ///< or the script
  };

  std::string name;                                 ///< empty for the whole script
  ScriptLayout* enclosing = nullptr;                ///< the layout of the script around this one's text
  std::vector<VariableName> variables;              ///< by index
  std::unordered_map<std::string, int> indexByName; ///< folded names
  std::vector<Initializer> initializers;
  std::unordered_map<std::string, const HandlerDefinition*> handlers; ///< folded names
  std::vector<const Statement*> implicitRun; ///< statements outside of handlers, when there is no `on run`
  int parentIndex = -1;                      ///< of the property `parent`
  std::set<std::string> globals;             ///< folded names declared `global` in a script inside of another

  /// The index of a property, script or global of that name (ignoring case) in this script alone.
  [[nodiscard]] std::optional<int> findVariable(std::string_view name) const;
  /// A handler of this script alone; null when there is none.
  [[nodiscard]] const HandlerDefinition* findHandler(const std::string& foldedName) const;
  [[nodiscard]] ScriptLayout& outermost();
  /// A statement of the implicit run handler.
  [[nodiscard]] static bool isRunStatement(const Statement& statement);

  /// Takes in what the script's text defines, but for the initializers.
  void collect(const Block& body);
  /// The index of the variable of that name, which is made if there is none. Indices stay as they are;
  /// `isSeenByHandlers` is only ever added.
  int declare(const Label& label, bool isSeenByHandlers);

private:
  /// A global is one of the outermost script, and a name of this one too.
  void declareGlobal(const std::string& name);
};

/// The layouts of a whole script, the outermost first.
using ScriptLayouts = std::vector<std::unique_ptr<ScriptLayout>>;

} // namespace tabwright::applescript
