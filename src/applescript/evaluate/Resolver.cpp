// Two steps per script: first its layout is collected (properties, handlers, scripts, globals declared outside of
// handlers), since handlers may use what stands below them; then each handler's body is walked with a table of the
// names seen so far. Statements are walked by kind, without a default, so that a new kind can't be forgotten.
#include "applescript/evaluate/Resolver.h"

#include "applescript/syntax/Children.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Names.h"

#include <set>
#include <utility>

namespace tabwright::applescript {

std::optional<int> ScriptLayout::findVariable(std::string_view variable) const {
  const auto found = indexByName.find(foldedName(variable));
  if (found == indexByName.end())
    return {};
  return found->second;
}

const HandlerDefinition* ScriptLayout::findHandler(const std::string& folded) const {
  const auto found = handlers.find(folded);
  return found == handlers.end() ? nullptr : found->second;
}

namespace {

class Resolver {
public:
  ScriptLayouts takeLayouts() { return std::move(layouts_); }

  ScriptLayout& script(Block& body, std::string name, ScriptLayout* enclosing) {
    ScriptLayout& layout = *layouts_.emplace_back(std::make_unique<ScriptLayout>());
    layout.name = std::move(name);
    layout.enclosing = enclosing;
    collect(body, layout);

    ScriptLayout* const outerScript = std::exchange(script_, &layout);
    for (const auto& statement : body) {
      switch (statement->kind) {
      case Statement::Kind::property: {
        auto& property = static_cast<PropertyDefinition&>(*statement);
        visit(property.value);
        layout.initializers.push_back({*layout.findVariable(property.name.name), property.value.get(), nullptr});
        break;
      }
      case Statement::Kind::script: {
        auto& definition = static_cast<ScriptDefinition&>(*statement);
        scriptDefinition(definition);
        if (definition.binding)
          layout.initializers.push_back({*layout.findVariable(definition.name), nullptr, &definition});
        break;
      }
      default:
        break;
      }
    }
    HandlerScope* const outerHandler = std::exchange(handler_, nullptr);
    for (const auto& statement : body) {
      if (statement->kind == Statement::Kind::handler)
        handler(static_cast<HandlerDefinition&>(*statement));
    }
    for (const auto& statement : body) {
      if (isRunStatement(*statement))
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

  static bool isRunStatement(const Statement& statement) {
    switch (statement.kind) {
    case Statement::Kind::property:
    case Statement::Kind::script:
    case Statement::Kind::handler:
    case Statement::Kind::use:
      return false;
    default:
      return true;
    }
  }

  static int declare(ScriptLayout& layout, const Label& label, bool isSeenByHandlers) {
    const auto [place, isNew] =
        layout.indexByName.try_emplace(foldedName(label.name), static_cast<int>(layout.variables.size()));
    if (isNew)
      layout.variables.push_back({label, isSeenByHandlers});
    else if (isSeenByHandlers)
      layout.variables[static_cast<std::size_t>(place->second)].isSeenByHandlers = true;
    return place->second;
  }

  void collect(const Block& body, ScriptLayout& layout) {
    for (const auto& statement : body) {
      switch (statement->kind) {
      case Statement::Kind::property: {
        const Label& label = static_cast<const PropertyDefinition&>(*statement).name;
        const int index = declare(layout, label, true);
        if (label.code == codes::parent || sameName(label.name, "parent"))
          layout.parentIndex = index;
        break;
      }
      case Statement::Kind::script:
        if (const auto& name = static_cast<const ScriptDefinition&>(*statement).name; !name.empty())
          declare(layout, {0, name}, true);
        break;
      case Statement::Kind::handler: {
        const auto& definition = static_cast<const HandlerDefinition&>(*statement);
        layout.handlers.insert_or_assign(foldedName(definition.name), &definition);
        break;
      }
      case Statement::Kind::declare: {
        const auto& declaration = static_cast<const Declare&>(*statement);
        for (const auto& variable : declaration.variables) {
          if (declaration.scope == Declare::Scope::global)
            declareGlobal(layout, variable->name);
        }
        layout.implicitRun.push_back(statement.get());
        break;
      }
      default:
        if (isRunStatement(*statement))
          layout.implicitRun.push_back(statement.get());
        break;
      }
    }
  }

  // A global is one of the outermost script, and a name of this one too.
  void declareGlobal(ScriptLayout& layout, const std::string& name) {
    ScriptLayout* outermost = &layout;
    while (outermost->enclosing)
      outermost = outermost->enclosing;
    declare(*outermost, {0, name}, outermost == &layout);
    if (outermost != &layout)
      globalsOf_[&layout].insert(foldedName(name));
  }

  void handler(HandlerDefinition& definition) {
    HandlerScope scope;
    HandlerScope* const outer = std::exchange(handler_, &scope);
    for (auto& parameter : definition.positional)
      bindPattern(parameter.pattern);
    if (definition.direct)
      bindPattern(definition.direct->pattern);
    for (auto& [label, parameter] : definition.labelled)
      bindPattern(parameter.pattern);
    for (auto& parameter : definition.positional)
      visit(parameter.defaultValue);
    if (definition.direct)
      visit(definition.direct->defaultValue);
    for (auto& [label, parameter] : definition.labelled)
      visit(parameter.defaultValue);
    visit(definition.body);
    for (const int slot : scope.referenced) {
      for (Variable* variable : scope.occurrences[static_cast<std::size_t>(slot)])
        variable->place = Variable::Place::cell;
    }
    definition.frameSize = static_cast<int>(scope.occurrences.size());
    handler_ = outer;
  }

  // Parameters are the handler's own whatever the script calls its properties.
  void bindPattern(const ExpressionPointer& pattern) {
    if (!pattern)
      return;
    switch (pattern->kind) {
    case Expression::Kind::variable: {
      auto& variable = static_cast<Variable&>(*pattern);
      slotOf(foldedName(variable.name));
      place(variable);
      break;
    }
    case Expression::Kind::list:
      for (const auto& item : static_cast<ListLiteral&>(*pattern).items)
        bindPattern(item);
      break;
    case Expression::Kind::record:
      for (const auto& field : static_cast<RecordLiteral&>(*pattern).fields)
        bindPattern(field.second);
      break;
    case Expression::Kind::parenthesized:
      bindPattern(static_cast<Parenthesized&>(*pattern).inner);
      break;
    default:
      visit(pattern);
      break;
    }
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
    int depth = 0;
    ScriptLayout* outermost = script_;
    for (; outermost->enclosing; outermost = outermost->enclosing)
      ++depth;
    placeInScript(variable, declare(*outermost, {0, variable.name}, false), depth);
  }

  bool placeAmongScripts(Variable& variable, const std::string& folded) {
    int depth = 0;
    for (ScriptLayout* layout = script_; layout; layout = layout->enclosing, ++depth) {
      if (const auto globals = globalsOf_.find(layout);
          globals != globalsOf_.end() && globals->second.contains(folded)) {
        placeGlobal(variable);
        return true;
      }
      const auto found = layout->indexByName.find(folded);
      if (found == layout->indexByName.end())
        continue;
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
    if (folded == "result" && !isBinding_) {
      variable.place = Variable::Place::result;
      return;
    }
    if (handler_)
      placeInFrame(variable, slotOf(folded));
    else
      placeInScript(variable, declare(*script_, {0, variable.name}, false), 0);
  }

  // Where a name gets a value, so that even `result` becomes a variable.
  void bind(const ExpressionPointer& target) {
    if (!target)
      return;
    switch (target->kind) {
    case Expression::Kind::variable: {
      const bool outer = std::exchange(isBinding_, true);
      place(static_cast<Variable&>(*target));
      isBinding_ = outer;
      break;
    }
    case Expression::Kind::list:
      for (const auto& item : static_cast<ListLiteral&>(*target).items)
        bind(item);
      break;
    case Expression::Kind::record:
      for (const auto& field : static_cast<RecordLiteral&>(*target).fields)
        bind(field.second);
      break;
    default:
      visit(target);
      break;
    }
  }
  void bind(const std::unique_ptr<Variable>& variable) {
    if (!variable)
      return;
    const bool outer = std::exchange(isBinding_, true);
    place(*variable);
    isBinding_ = outer;
  }

  void scriptDefinition(ScriptDefinition& definition) {
    if (!definition.name.empty()) {
      definition.binding = std::make_unique<Variable>(definition.name);
      bind(definition.binding);
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

  void visit(Expression& expression) {
    if (expression.kind == Expression::Kind::variable)
      return place(static_cast<Variable&>(expression));
    forEachChild(expression, [&](Expression& child) { visit(child); });
    if (expression.kind == Expression::Kind::referenceTo)
      noteReference(*static_cast<ReferenceTo&>(expression).operand);
    else if (expression.kind == Expression::Kind::handlerCall)
      static_cast<HandlerCall&>(expression).foldedName = foldedName(static_cast<HandlerCall&>(expression).name);
    else if (expression.kind == Expression::Kind::message)
      nameSelector(static_cast<ObjectiveCMessage&>(expression));
  }

  static void nameSelector(ObjectiveCMessage& message) {
    message.selector.clear();
    for (const std::string& part : message.parts)
      message.selector += part + ":";
  }

  void noteReference(const Expression& operand) {
    if (operand.kind == Expression::Kind::parenthesized)
      return noteReference(*static_cast<const Parenthesized&>(operand).inner);
    if (operand.kind != Expression::Kind::variable || !handler_)
      return;
    const auto& variable = static_cast<const Variable&>(operand);
    if (variable.place == Variable::Place::frame)
      handler_->referenced.insert(variable.slot);
  }

  void visit(Statement& statement) {
    using Kind = Statement::Kind;
    switch (statement.kind) {
    case Kind::expression:
      visit(static_cast<ExpressionStatement&>(statement).expression);
      break;
    case Kind::set:
      visit(static_cast<Assignment&>(statement).value);
      bind(static_cast<Assignment&>(statement).target);
      break;
    case Kind::ifElse: {
      auto& choice = static_cast<If&>(statement);
      for (auto& branch : choice.branches) {
        visit(branch.condition);
        visit(branch.body);
      }
      if (choice.otherwise)
        visit(*choice.otherwise);
      break;
    }
    case Kind::repeat: {
      auto& repeat = static_cast<Repeat&>(statement);
      visit(repeat.condition);
      visit(repeat.from);
      visit(repeat.to);
      visit(repeat.by);
      visit(repeat.items);
      bind(repeat.variable);
      visit(repeat.body);
      break;
    }
    case Kind::exitRepeat:
    case Kind::use:
      break;
    case Kind::continueHandler:
      visit(static_cast<ContinueStatement&>(statement).call);
      break;
    case Kind::tell:
      visit(static_cast<Tell&>(statement).target);
      visit(static_cast<Tell&>(statement).body);
      break;
    case Kind::tryBlock: {
      auto& attempt = static_cast<Try&>(statement);
      visit(attempt.body);
      bind(attempt.message);
      bind(attempt.number);
      bind(attempt.from);
      bind(attempt.partialResult);
      bind(attempt.to);
      visit(attempt.handler);
      break;
    }
    case Kind::returning:
      visit(static_cast<Return&>(statement).value);
      break;
    case Kind::error: {
      auto& error = static_cast<RaiseError&>(statement);
      for (const auto* part : {&error.message, &error.number, &error.from, &error.partialResult, &error.to})
        visit(*part);
      break;
    }
    case Kind::considering:
      visit(static_cast<Considering&>(statement).body);
      break;
    case Kind::timeout:
      visit(static_cast<Timeout&>(statement).seconds);
      visit(static_cast<Timeout&>(statement).body);
      break;
    case Kind::transaction:
      visit(static_cast<Transaction&>(statement).body);
      break;
    case Kind::usingTerms:
      visit(static_cast<UsingTerms&>(statement).body);
      break;
    case Kind::declare:
      for (const auto& variable : static_cast<Declare&>(statement).variables) {
        const std::string folded = foldedName(variable->name);
        if (handler_ && static_cast<Declare&>(statement).scope == Declare::Scope::global)
          handler_->globals.insert(folded);
        else if (handler_)
          slotOf(folded);
        bind(variable);
      }
      break;
    case Kind::script:
      scriptDefinition(static_cast<ScriptDefinition&>(statement));
      break;
    case Kind::property:
    case Kind::handler:
      break; // Only at the top of a script, where they are collected.
    }
  }

  ScriptLayouts layouts_;
  ScriptLayout* script_ = nullptr;
  HandlerScope* handler_ = nullptr;
  bool isBinding_ = false;
  std::unordered_map<const ScriptLayout*, std::set<std::string>> globalsOf_; // declared `global` inside a script
};

} // namespace

ScriptLayouts resolve(SyntaxTree& tree) {
  Resolver resolver;
  resolver.script(tree.body, {}, nullptr);
  return resolver.takeLayouts();
}

} // namespace tabwright::applescript
