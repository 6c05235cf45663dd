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
/// Statements in the order written; may be empty.
using Block = std::vector<StatementPointer>;

/// A statement: one line, or a block with all that is in it. Pointers are never null but where a comment says so.
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
  /// From the first token to the last, for a block that of its `end`; within the tree's source.
  SourceRange range;
};

/// The base of each node, which gives it its kind; `as` reads `ownKind`.
template <Statement::Kind own>
struct StatementOf : Statement {
  static constexpr Kind ownKind = own;
  StatementOf() : Statement(own) {}
};

/// `exit repeat`, `exit`: leaves the innermost `repeat` of the handler; the parser has seen that there is one.
struct ExitRepeat final : StatementOf<Statement::Kind::exitRepeat> {};

/// `continue f(x)`, `continue quit`: hands the call on to the parent of the script. A bare name is a call without
/// arguments.
struct ContinueStatement final : StatementOf<Statement::Kind::continueHandler> {
  ExpressionPointer call; ///< a HandlerCall or a Command
};

/// Any expression that stands alone; its value becomes `result`.
struct ExpressionStatement final : StatementOf<Statement::Kind::expression> {
  ExpressionPointer expression;
};

/// `set x to v`, `set {a, b} to xs`, `set name of w to v`, `copy v to x`. The target is a variable, a property or
/// element access, an insertion point, or a list or record of such.
struct Assignment final : StatementOf<Statement::Kind::set> {
  enum class Form { set, copy };
  /// `copy` gives the target values of its own, where `set` shares lists and records.
  Form form = Form::set;
  ExpressionPointer target;
  ExpressionPointer value;
};

/// One condition with its statements or several, tried in the order written, and an `else`.
struct If final : StatementOf<Statement::Kind::ifElse> {
  struct Branch {
    ExpressionPointer condition;
    Block body;
  };
  /// At least one: `if`, and each `else if`.
  std::vector<Branch> branches;
  /// Nothing without an `else`, which an empty block isn't.
  std::optional<Block> otherwise;
  std::size_t otherwiseAt = 0; ///< offset of the last `else`
  bool onOneLine = false;      ///< `if x then return 1`
};

/// A loop: `repeat`, `repeat n times`, `repeat while x`, `repeat until x`, `repeat with i from a to b by c`, `repeat
/// with x in xs`. Fields that a form doesn't name are null.
struct Repeat final : StatementOf<Statement::Kind::repeat> {
  enum class Form { forever, times, whileTrue, untilTrue, range, items };
  Form form = Form::forever;
  ExpressionPointer condition;        ///< times: the count; whileTrue, untilTrue: the condition
  std::unique_ptr<Variable> variable; ///< range, items
  ExpressionPointer from, to, by;     ///< range; `by` may be null
  ExpressionPointer items;            ///< items
  Block body;
};

/// `tell x … end tell`: x is the target of what stands inside.
struct Tell final : StatementOf<Statement::Kind::tell> {
  ExpressionPointer target;
  Block body;
  bool onOneLine = false; ///< `tell x to …`
};

/// `try … on error m number n … end try`; without `on error` an error only ends the block.
struct Try final : StatementOf<Statement::Kind::tryBlock> {
  Block body;
  bool hasHandler = false;
  std::unique_ptr<Variable> message, number, from, partialResult, to; ///< null where not bound
  /// `on error number -128`: the handler takes errors of that number only. Then `number` is null.
  ExpressionPointer onlyNumber;
  std::size_t handlerAt = 0; ///< offset of `on error`
  Block handler;
};

/// `return x`; ends the handler, or the run.
struct Return final : StatementOf<Statement::Kind::returning> {
  ExpressionPointer value; ///< null: returns nothing
};

/// `error "text" number n from x partial result y to z`: each part in any order, all optional.
struct RaiseError final : StatementOf<Statement::Kind::error> {
  ExpressionPointer message, number, from, partialResult, to; ///< null where not written
};

/// `considering case but ignoring hyphens`, and `ignoring` alike. An attribute in neither list stays as it was around.
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
  /// In the order written; at least one of the lists isn't empty.
  std::vector<Attribute> considered;
  std::vector<Attribute> ignored;
  Block body;
};

/// `with timeout of n seconds`: how long each event sent from inside may take.
struct Timeout final : StatementOf<Statement::Kind::timeout> {
  /// A number, fractions too.
  ExpressionPointer seconds;
  Block body;
};

/// `with transaction`: the run evaluates the session, then takes the body as if it stood alone.
struct Transaction final : StatementOf<Statement::Kind::transaction> {
  ExpressionPointer session; ///< null where not written
  Block body;
};

/// `using terms from application "X"`: words of a dictionary for the body. Only the parser minds it.
struct UsingTerms final : StatementOf<Statement::Kind::usingTerms> {
  /// Any expression; words come only from one that names its application literally.
  ExpressionPointer application;
  Block body;
};

/// `global a, b`, `local a, b`: a place for names, no values.
struct Declare final : StatementOf<Statement::Kind::declare> {
  enum class Scope { global, local };
  Scope scope = Scope::local;
  /// At least one.
  std::vector<std::unique_ptr<Variable>> variables;
};

/// `property name : value` of a script. The value is evaluated when the script is first loaded, not where it stands.
struct PropertyDefinition final : StatementOf<Statement::Kind::property> {
  /// With a dictionary's code where the name is its word, so that `property name : x` is the script object's `name`.
  Label name;
  ExpressionPointer value;
};

/// A formal parameter: a variable, or a list of such to be taken apart (`on f({a, b})`), with an optional default
/// (`given x:y : 3`).
struct Parameter {
  /// A Variable, or a ListLiteral or RecordLiteral of targets.
  ExpressionPointer pattern;
  /// Null: the parameter must be given.
  ExpressionPointer defaultValue;
};

/// `on f(a, b)`, `on f of x from a given b:c`, `on run argv`, `on setValue:v forKey:k`; `to` for `on`.
struct HandlerDefinition final : StatementOf<Statement::Kind::handler> {
  /// "run" for the run handler; "setValue:forKey:" for `on setValue:v forKey:k`, which ObjectiveCMessage calls.
  std::string name;
  /// Of brackets, or of a message.
  std::vector<Parameter> positional;
  /// `on f of x from a`; and, not labelled, the one parameter without brackets of `on run argv` and `on open files`.
  std::unique_ptr<Parameter> direct;
  /// Prepositions and `given` labels, in the order written; a call may give them in any.
  std::vector<std::pair<std::string, Parameter>> labelled;
  /// Labels were written; a call of such a handler must have labels too.
  bool isLabelled = false;
  Block body;
  /// Resolver: number of slots of a frame.
  int frameSize = 0;
};

/// `script s … end script`: a script object, with properties, handlers and statements of its own as the whole script
/// has them.
struct ScriptDefinition final : StatementOf<Statement::Kind::script> {
  std::string name; ///< empty for `script … end script` without a name
  Block body;
  const ScriptLayout* layout = nullptr; ///< Resolver
  std::unique_ptr<Variable> binding;    ///< Resolver: the variable that the name stands for; null without a name
};

/// `use …`. Its dictionary holds from there to the script's end; the run takes no notice of it.
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
