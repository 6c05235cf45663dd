#pragma once

#include "applescript/syntax/ExpressionNodes.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The nodes of statements: see Tree.h.
namespace tabwright::applescript {

struct Statement;
struct ScriptLayout;
using StatementPointer = std::unique_ptr<Statement>;
using Block = std::vector<StatementPointer>;

struct Statement {
  enum class Kind {
    expression,      ///< ExpressionStatement
    set,             ///< Assignment (`set`, `copy`)
    ifElse,          ///< If
    repeat,          ///< Repeat
    exitRepeat,      ///< ExitRepeat
    continueHandler, ///< ContinueStatement (`continue f(x)` of a script with a parent)
    tell,            ///< Tell
    tryBlock,        ///< Try
    returning,       ///< Return
    error,           ///< RaiseError
    considering,     ///< Considering
    timeout,         ///< Timeout
    transaction,     ///< Transaction
    usingTerms,      ///< UsingTerms
    declare,         ///< Declare (`global`, `local`)
    property,        ///< PropertyDefinition
    handler,         ///< HandlerDefinition
    script,          ///< ScriptDefinition
    use,             ///< Use
  };
  explicit Statement(Kind kind) : kind(kind) {}
  virtual ~Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  const Kind kind;
  SourceRange range;
};

template <Statement::Kind own>
struct StatementOf : Statement {
  static constexpr Kind ownKind = own;
  StatementOf() : Statement(own) {}
};

struct ExitRepeat final : StatementOf<Statement::Kind::exitRepeat> {};

/// `continue f(x)`, `continue quit`: hands the call on to the parent of the script.
struct ContinueStatement final : StatementOf<Statement::Kind::continueHandler> {
  ExpressionPointer call; ///< a HandlerCall or a Command
};

struct ExpressionStatement final : StatementOf<Statement::Kind::expression> {
  ExpressionPointer expression;
};

/// `set x to v`, `set {a, b} to xs`, `set name of w to v`, `copy v to x`. The target is a variable, a property or
/// element access, an insertion point, or a list or record of such.
struct Assignment final : StatementOf<Statement::Kind::set> {
  enum class Form { set, copy };
  Form form = Form::set;
  ExpressionPointer target;
  ExpressionPointer value;
};

struct If final : StatementOf<Statement::Kind::ifElse> {
  struct Branch {
    ExpressionPointer condition;
    Block body;
  };
  std::vector<Branch> branches;
  std::optional<Block> otherwise;
  std::size_t otherwiseAt = 0; ///< offset of the last `else`
  bool onOneLine = false;      ///< `if x then return 1`
};

struct Repeat final : StatementOf<Statement::Kind::repeat> {
  enum class Form { forever, times, whileTrue, untilTrue, range, items };
  Form form = Form::forever;
  ExpressionPointer condition;        ///< times: the count; whileTrue, untilTrue: the condition
  std::unique_ptr<Variable> variable; ///< range, items
  ExpressionPointer from, to, by;     ///< range; `by` may be null
  ExpressionPointer items;            ///< items
  Block body;
};

struct Tell final : StatementOf<Statement::Kind::tell> {
  ExpressionPointer target;
  Block body;
  bool onOneLine = false; ///< `tell x to …`
};

struct Try final : StatementOf<Statement::Kind::tryBlock> {
  Block body;
  bool hasHandler = false;
  std::unique_ptr<Variable> message, number, from, partialResult, to; ///< null where not bound
  /// `on error number -128`: the handler takes errors of that number only. Then `number` is null.
  ExpressionPointer onlyNumber;
  std::size_t handlerAt = 0; ///< offset of `on error`
  Block handler;
};

struct Return final : StatementOf<Statement::Kind::returning> {
  ExpressionPointer value; ///< null: returns nothing
};

struct RaiseError final : StatementOf<Statement::Kind::error> {
  ExpressionPointer message, number, from, partialResult, to; ///< null where not written
};

struct Considering final : StatementOf<Statement::Kind::considering> {
  enum class Attribute {
    textCase,
    diacriticals,
    expansion,
    hyphens,
    punctuation,
    whiteSpace,
    numericStrings,
    applicationResponses
  };
  std::vector<Attribute> considered;
  std::vector<Attribute> ignored;
  Block body;
};

struct Timeout final : StatementOf<Statement::Kind::timeout> {
  ExpressionPointer seconds;
  Block body;
};

struct Transaction final : StatementOf<Statement::Kind::transaction> {
  ExpressionPointer session; ///< null where not written
  Block body;
};

struct UsingTerms final : StatementOf<Statement::Kind::usingTerms> {
  ExpressionPointer application;
  Block body;
};

struct Declare final : StatementOf<Statement::Kind::declare> {
  enum class Scope { global, local };
  Scope scope = Scope::local;
  std::vector<std::unique_ptr<Variable>> variables;
};

struct PropertyDefinition final : StatementOf<Statement::Kind::property> {
  Label name;
  ExpressionPointer value;
};

/// A formal parameter: a variable, or a list of such to be taken apart (`on f({a, b})`), with an optional default
/// (`given x:y : 3`).
struct Parameter {
  ExpressionPointer pattern;
  ExpressionPointer defaultValue;
};

struct HandlerDefinition final : StatementOf<Statement::Kind::handler> {
  /// "run" for the run handler; "setValue:forKey:" for `on setValue:v forKey:k`, which ObjectiveCMessage calls.
  std::string name;
  std::vector<Parameter> positional;
  /// `on f of x from a`; and, not labelled, the one parameter without brackets of `on run argv` and `on open files`.
  std::unique_ptr<Parameter> direct;
  std::vector<std::pair<std::string, Parameter>> labelled;
  bool isLabelled = false;
  Block body;
  /// Resolver: number of slots of a frame.
  int frameSize = 0;
};

struct ScriptDefinition final : StatementOf<Statement::Kind::script> {
  std::string name; ///< empty for `script … end script` without a name
  Block body;
  const ScriptLayout* layout = nullptr; ///< Resolver
  std::unique_ptr<Variable> binding;    ///< Resolver: the variable that the name stands for; null without a name
};

struct Use final : StatementOf<Statement::Kind::use> {
  enum class What { appleScript, scriptingAdditions, framework, application, script };
  What what = What::appleScript;
  std::string name;                   ///< framework, application, script
  std::optional<std::string> version; ///< `version "2.4"`
  std::string alias;                  ///< `use Safari : application "Safari"`
  ExpressionPointer value;            ///< what the alias stands for, where that is an application
  bool byID = false;                  ///< `use application id "ID"`
  bool imports = true;                ///< false: `without importing`
};

} // namespace tabwright::applescript
