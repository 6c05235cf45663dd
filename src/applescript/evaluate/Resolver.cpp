// Each script's layout is collected first, since handlers may use what stands below them; then its statements are
// walked with a table of the names seen so far: values of properties, then handlers, then what is run. A name is placed
// innermost scope first, and one that no scope knows becomes a variable of the innermost. Statements are walked by
// kind, without a default, so that a new kind can't be forgotten.
#include "applescript/evaluate/Resolver.h"

#include "applescript/syntax/Children.h"
#include "applescript/values/Names.h"
#include "applescript/values/Restored.h"

#include <set>
#include <utility>

namespace tabwright::applescript {

namespace {

class Resolver {
public:
  ScriptLayouts takeLayouts() { return std::move(layouts_); }

  ScriptLayout& script(Block& body, std::string name, ScriptLayout* enclosing) {
    ScriptLayout& layout = *layouts_.emplace_back(std::make_unique<ScriptLayout>());
    layout.name = std::move(name);
    layout.enclosing = enclosing;
    layout.collect(body);

    ScriptLayout* const outerScript = std::exchange(script_, &layout);
    for (const auto& statement : body) {
      if (auto* property = as<PropertyDefinition>(*statement)) {
        visit(property->value);
        layout.initializers.push_back({*layout.findVariable(property->name.name), property->value.get(), nullptr});
      } else if (auto* use = as<Use>(*statement); use && use->value) {
        visit(use->value);
        layout.initializers.push_back({*layout.findVariable(use->alias), use->value.get(), nullptr});
      } else if (auto* definition = as<ScriptDefinition>(*statement)) {
        scriptDefinition(*definition);
        if (definition->binding)
          layout.initializers.push_back({*layout.findVariable(definition->name), nullptr, definition});
      }
    }
    // The values above may use variables of the handler that the script stands in; its own handlers can't, since that
    // one may have returned when they run.
    HandlerScope* const outerHandler = std::exchange(handler_, nullptr);
    for (const auto& statement : body) {
      if (auto* definition = as<HandlerDefinition>(*statement))
        handler(*definition);
    }
    for (const auto& statement : body) {
      if (ScriptLayout::isRunStatement(*statement))
        visit(*statement);
    }
    handler_ = outerHandler;
    script_ = outerScript;
    return layout;
  }

private:
  struct HandlerScope {
    std::unordered_map<std::string, int> slots;
    std::set<std::string> globals;
    std::vector<std::vector<Variable*>> occurrences; // by slot
    std::set<int> referenced;                        // slots that `a reference to` names
  };

  void handler(HandlerDefinition& definition) {
    HandlerScope scope;
    HandlerScope* const outer = std::exchange(handler_, &scope);
    const auto eachParameter = [&](auto use) {
      for (const Parameter& parameter : definition.positional)
        use(parameter);
      if (definition.direct)
        use(*definition.direct);
      for (const auto& [label, parameter] : definition.labelled)
        use(parameter);
    };
    eachParameter([this](const Parameter& parameter) { bindPattern(*parameter.pattern); });
    eachParameter([this](const Parameter& parameter) { visit(parameter.defaultValue); });
    visit(definition.body);
    // Not before the handler's end: what a reference names further down may have been used above.
    for (const int slot : scope.referenced) {
      for (Variable* variable : scope.occurrences[static_cast<std::size_t>(slot)])
        variable->place = Variable::Place::cell;
    }
    definition.frameSize = static_cast<int>(scope.occurrences.size());
    handler_ = outer;
  }

  // Parameters are the handler's own whatever the script calls its properties.
  void bindPattern(Expression& pattern) {
    if (auto* variable = as<Variable>(pattern))
      slotOf(foldedName(variable->name));
    if (as<ListLiteral>(pattern) || as<RecordLiteral>(pattern))
      forEachChild(pattern, [this](Expression& part) { bindPattern(part); });
    else
      visit(pattern);
  }

  int slotOf(const std::string& folded) {
    const auto [found, isNew] = handler_->slots.try_emplace(folded, static_cast<int>(handler_->occurrences.size()));
    if (isNew)
      handler_->occurrences.emplace_back();
    return found->second;
  }

  void placeInFrame(Variable& variable, int slot) {
    variable.place = Variable::Place::frame;
    variable.slot = slot;
    handler_->occurrences[static_cast<std::size_t>(slot)].push_back(&variable);
  }

  static void placeInScript(Variable& variable, int index, int depth) {
    variable.place = Variable::Place::script;
    variable.slot = index;
    variable.scriptDepth = depth;
  }

  void placeGlobal(Variable& variable) {
    // The outermost script has the variable even if it never names it itself.
    int depth = 0;
    for (const ScriptLayout* layout = script_; layout->enclosing; layout = layout->enclosing)
      ++depth;
    placeInScript(variable, script_->outermost().declare({0, variable.name}, false), depth);
  }

  bool placeAmongScripts(Variable& variable, const std::string& folded) {
    int depth = 0;
    for (ScriptLayout* layout = script_; layout; layout = layout->enclosing, ++depth) {
      if (layout->globals.contains(folded)) {
        placeGlobal(variable);
        return true;
      }
      const auto found = layout->indexByName.find(folded);
      if (found == layout->indexByName.end())
        continue;
      // Variables of a run handler are its own until a handler declares them `global`.
      const bool isRunHandlersOwn = layout == script_ && !handler_;
      if (!isRunHandlersOwn && !layout->variables[static_cast<std::size_t>(found->second)].isSeenByHandlers)
        continue;
      placeInScript(variable, found->second, depth);
      return true;
    }
    return false;
  }

  void place(Variable& variable) {
    const std::string folded = foldedName(variable.name);
    if (handler_) {
      if (const auto found = handler_->slots.find(folded); found != handler_->slots.end())
        return placeInFrame(variable, found->second);
      if (handler_->globals.contains(folded))
        return placeGlobal(variable);
    }
    if (placeAmongScripts(variable, folded))
      return;
    // Behind all scopes, so that a variable of that name hides it.
    if (folded == "result" && !isBinding_) {
      variable.place = Variable::Place::result;
      return;
    }
    if (handler_)
      placeInFrame(variable, slotOf(folded));
    else
      placeInScript(variable, script_->declare({0, variable.name}, false), 0);
  }

  // Binding gives a name a value, so that even `result` becomes a variable.
  void bind(Expression& target) {
    if (auto* variable = as<Variable>(target)) {
      const Restored<bool> binding(isBinding_, true);
      place(*variable);
    } else if (as<ListLiteral>(target) || as<RecordLiteral>(target)) {
      forEachChild(target, [this](Expression& part) { bind(part); });
    } else {
      visit(target);
    }
  }
  template <class... Targets>
  void bindAll(const Targets&... targets) {
    ((targets ? bind(*targets) : void()), ...);
  }

  void scriptDefinition(ScriptDefinition& definition) {
    if (!definition.name.empty()) {
      definition.binding = std::make_unique<Variable>(definition.name);
      bind(*definition.binding);
    }
    definition.layout = &script(definition.body, definition.name, script_);
  }

  void visit(const Block& block) {
    for (const auto& statement : block)
      visit(*statement);
  }

  void visit(const ExpressionPointer& expression) {
    if (expression)
      visit(*expression);
  }
  template <class... Parts>
  void visitAll(const Parts&... parts) {
    (visit(parts), ...);
  }

  void visit(Expression& expression) {
    if (auto* variable = as<Variable>(expression))
      return place(*variable);
    // Before what the node itself asks of its operand: a reference needs the variable placed.
    forEachChild(expression, [this](Expression& child) { visit(child); });
    if (auto* reference = as<ReferenceTo>(expression))
      noteReference(withoutParentheses(*reference->operand));
    else if (auto* call = as<HandlerCall>(expression))
      call->foldedName = foldedName(call->name);
    else if (auto* message = as<ObjectiveCMessage>(expression))
      nameSelector(*message);
  }

  static void nameSelector(ObjectiveCMessage& message) {
    message.selector.clear();
    for (const std::string& part : message.parts)
      message.selector += part + ":";
  }

  void noteReference(const Expression& operand) {
    const auto* variable = as<Variable>(operand);
    if (variable && handler_ && variable->place == Variable::Place::frame)
      handler_->referenced.insert(variable->slot);
  }

  void visit(Statement& statement) {
    using Kind = Statement::Kind;
    switch (statement.kind) {
    case Kind::expression:
      return visit(static_cast<ExpressionStatement&>(statement).expression);
    case Kind::set:
      // The value first, as it is evaluated first: in `set result to result` it is still that of the statement before.
      visit(static_cast<Assignment&>(statement).value);
      return bind(*static_cast<Assignment&>(statement).target);
    case Kind::ifElse: {
      const auto& choice = static_cast<If&>(statement);
      for (const auto& branch : choice.branches)
        visitAll(branch.condition, branch.body);
      return choice.otherwise ? visit(*choice.otherwise) : void();
    }
    case Kind::repeat: {
      const auto& repeat = static_cast<Repeat&>(statement);
      visitAll(repeat.condition, repeat.from, repeat.to, repeat.by, repeat.items);
      bindAll(repeat.variable);
      return visit(repeat.body);
    }
    case Kind::continueHandler:
      return visit(static_cast<ContinueStatement&>(statement).call);
    case Kind::tell: {
      const auto& tell = static_cast<Tell&>(statement);
      return visitAll(tell.target, tell.body);
    }
    case Kind::tryBlock: {
      const auto& attempt = static_cast<Try&>(statement);
      visit(attempt.body);
      bindAll(attempt.message, attempt.number, attempt.from, attempt.partialResult, attempt.to);
      return visit(attempt.handler);
    }
    case Kind::returning:
      return visit(static_cast<Return&>(statement).value);
    case Kind::error: {
      const auto& error = static_cast<RaiseError&>(statement);
      return visitAll(error.message, error.number, error.from, error.partialResult, error.to);
    }
    case Kind::considering:
      return visit(static_cast<Considering&>(statement).body);
    case Kind::timeout: {
      const auto& timeout = static_cast<Timeout&>(statement);
      return visitAll(timeout.seconds, timeout.body);
    }
    case Kind::transaction: {
      auto& transaction = static_cast<Transaction&>(statement);
      return visitAll(transaction.session, transaction.body);
    }
    case Kind::usingTerms:
      return visit(static_cast<UsingTerms&>(statement).body);
    case Kind::declare:
      return visit(static_cast<const Declare&>(statement));
    case Kind::script:
      return scriptDefinition(static_cast<ScriptDefinition&>(statement));
    case Kind::property:
    case Kind::handler: // Only at the top of a script, where they are collected.
    case Kind::exitRepeat:
    case Kind::use:
      return;
    }
  }

  void visit(const Declare& declaration) {
    for (const auto& variable : declaration.variables) {
      const std::string folded = foldedName(variable->name);
      if (handler_ && declaration.scope == Declare::Scope::global)
        handler_->globals.insert(folded);
      else if (handler_)
        slotOf(folded);
      bind(*variable);
    }
  }

  ScriptLayouts layouts_;
  ScriptLayout* script_ = nullptr;
  HandlerScope* handler_ = nullptr;
  bool isBinding_ = false;
};

} // namespace

ScriptLayouts resolve(SyntaxTree& tree) {
  Resolver resolver;
  resolver.script(tree.body, {}, nullptr);
  return resolver.takeLayouts();
}

} // namespace tabwright::applescript
