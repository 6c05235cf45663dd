#pragma once

#include "applescript/SourceRange.h"
#include "applescript/terminology/EventCode.h"
#include "applescript/terminology/FourCharCode.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/Value.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The syntax tree of a script: what the parser makes, the printer writes and the evaluator runs.
///
/// A node is a struct derived from Expression or Statement with its `kind` set; whoever walks the tree switches over
/// `kind` without a default, so that a new kind can't be forgotten. Nodes own their children and never change after
/// parsing, but for the fields marked "resolver", which the evaluator's first pass fills in once.
namespace tabwright::applescript {

struct Expression;
struct Statement;
struct ScriptLayout;
using ExpressionPointer = std::unique_ptr<Expression>;
using StatementPointer = std::unique_ptr<Statement>;
using Block = std::vector<StatementPointer>;

// ---------------------------------------------------------------- expressions

struct Expression {
  enum class Kind {
    literal,            ///< Literal
    list,               ///< ListLiteral
    record,             ///< RecordLiteral
    variable,           ///< Variable
    me,                 ///< `me`: the script itself
    it,                 ///< `it`: the target of the enclosing `tell`, or the object under test in a `whose`
    currentApplication, ///< `current application`
    application,        ///< ApplicationReference
    property,           ///< PropertyAccess
    element,            ///< ElementAccess
    insertionPoint,     ///< InsertionPoint
    referenceTo,        ///< ReferenceTo
    unary,              ///< Unary
    binary,             ///< Binary
    coercion,           ///< Coercion
    handlerCall,        ///< HandlerCall
    command,            ///< Command
    message,            ///< ObjectiveCMessage
    parenthesized,      ///< Parenthesized: kept so that the printer gives back what was written
  };

  explicit Expression(Kind kind) : kind(kind) {}
  virtual ~Expression() = default;
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  const Kind kind;
  SourceRange range;
  /// Levels of the tree from here down. The parser bounds it (ParserLimits::height), so that whoever walks the tree by
  /// recursion knows how deep it gets.
  std::uint32_t height = 1;
};

/// How a reference was joined to its container: `name of w`, `name in w`, `w's name`. For the printer only.
enum class Joint { of, in, possessive };

/// A number, text, boolean, class name, enumerator, `missing value`, `null`, or a constant (`pi`, `return`, `tab`).
/// `AppleScript`, as in `AppleScript's text item delimiters`, is the enumerator 'ascr'.
struct Literal final : Expression {
  explicit Literal(Value value) : Expression(Kind::literal), value(std::move(value)) {}
  Value value;
  /// The words as the dictionary has them, for constants whose value can't show them (`linefeed`, `pi`); else empty.
  std::string words;
};

struct ListLiteral final : Expression {
  ListLiteral() : Expression(Kind::list) {}
  std::vector<ExpressionPointer> items;
};

struct RecordLiteral final : Expression {
  RecordLiteral() : Expression(Kind::record) {}
  std::vector<std::pair<Label, ExpressionPointer>> fields;
};

/// A name of the script's own. `result` is one too: it stands for the value of the last statement unless the script
/// binds it.
struct Variable final : Expression {
  explicit Variable(std::string name) : Expression(Kind::variable), name(std::move(name)) {}
  /// As first spelled in the script; compared ignoring case.
  std::string name;
  /// Resolver: where the variable lives.
  enum class Place {
    frame,  ///< in the handler's frame
    cell,   ///< in the handler's frame, as a cell that references can hold on to
    script, ///< a property or global of a script
    result, ///< nowhere: the value of the last statement
  };
  Place place = Place::frame;
  int slot = -1;       ///< index in the frame, or in the script's variables
  int scriptDepth = 0; ///< Place::script: how many scripts outwards from the one that the handler is in
};

struct SimpleExpression final : Expression { // me, it, current application
  explicit SimpleExpression(Kind kind) : Expression(kind) {}
};

/// `application "NAME"`, `application id "ID"`.
struct ApplicationReference final : Expression {
  enum class By { name, id };
  ApplicationReference() : Expression(Kind::application) {}
  By by = By::name;
  ExpressionPointer designation;
};

/// `name of x`, `x's name`, `name` alone inside a `tell` (container null: the target), `tabID of r`.
struct PropertyAccess final : Expression {
  PropertyAccess() : Expression(Kind::property) {}
  /// Code of a dictionary's property with its words, or code 0 and a name of the script's own.
  Label property;
  ExpressionPointer container; ///< null: the target of the enclosing `tell`
  Joint joint = Joint::of;
};

/// `tab 3 of w`, `tab id "8" of w`, `tabs`, `every tab whose …`, `first window`, `characters 2 thru -1 of t`,
/// `item i of xs`, `some window`, `middle item`, `tab before tab 3`, `text 1 thru 5 of t`.
struct ElementAccess final : Expression {
  enum class Form { index, first, last, middle, some, every, name, id, range, before, after };
  ElementAccess() : Expression(Kind::element) {}
  Form form = Form::every;
  bool isIndexWritten = false; ///< `tab index x`: by index whatever x is, also a text that holds a number
  bool isOrdinal = false;      ///< `third tab`: Form::index too, but written so that a test may follow
  ClassName elementClass;      ///< `words` as the dictionary has the singular
  ExpressionPointer key;       ///< index, name, id, or start of the range; a text or number decides at run time whether
                               ///< a bare `tab x` is by index or by name (Form::index is written for both)
  ExpressionPointer rangeEnd;  ///< Form::range only
  ExpressionPointer test;      ///< the `whose` condition, or null; inside it `it` and bare properties are the element's
  ExpressionPointer container; ///< null: the target of the enclosing `tell`
  Joint joint = Joint::of;
};

/// `end of xs`, `beginning of tabs of w`, as in `set end of xs to v` and `make … at end of tabs of w`; `before tab 3 of
/// w` and `after tab 3 of w` (`in front of`, `behind`), as in `make new tab at after tab 3 of w`.
struct InsertionPoint final : Expression {
  enum class Where { beginning, end, before, after };
  InsertionPoint() : Expression(Kind::insertionPoint) {}
  Where where = Where::end;
  ExpressionPointer container; ///< before, after: the element beside it. Null: the target of the enclosing `tell`
  Joint joint = Joint::of;
};

/// `a reference to x`, `ref x`.
struct ReferenceTo final : Expression {
  ReferenceTo() : Expression(Kind::referenceTo) {}
  ExpressionPointer operand;
};

struct Unary final : Expression {
  enum class Operator { negate, plus, logicalNot };
  Unary() : Expression(Kind::unary) {}
  Operator op = Operator::negate;
  ExpressionPointer operand;
};

struct Binary final : Expression {
  enum class Operator {
    add,
    subtract,
    multiply,
    divide,
    integerDivide,
    modulo,
    power,
    concatenate,
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    contains,
    doesNotContain,
    isIn,
    isNotIn,
    beginsWith,
    endsWith,
    logicalAnd,
    logicalOr,
  };
  Binary() : Expression(Kind::binary) {}
  Operator op = Operator::add;
  ExpressionPointer left;
  ExpressionPointer right;
};

/// `x as text`, `xs as {text, integer}` (the first that works).
struct Coercion final : Expression {
  Coercion() : Expression(Kind::coercion) {}
  ExpressionPointer operand;
  ExpressionPointer type;
};

/// A call of a handler of the script: `f(1, 2)`, `my f(x)`, `f(x) of s`, `s's f(x)`, `f from a to b given x:1`.
struct HandlerCall final : Expression {
  enum class Target { implicit, me, object };
  HandlerCall() : Expression(Kind::handlerCall) {}
  Target target = Target::implicit;
  ExpressionPointer object; ///< Target::object only
  Joint joint = Joint::of;
  std::string name;
  std::vector<ExpressionPointer> arguments;                        ///< positional
  ExpressionPointer direct;                                        ///< `f of x from a` : the direct parameter
  std::vector<std::pair<std::string, ExpressionPointer>> labelled; ///< prepositions and `given` labels
  bool isLabelled = false;                                         ///< which of the two forms was written
  std::string foldedName;                                          ///< Resolver: the key of handler tables
};

/// A command of a dictionary: `count windows`, `make new tab at end of tabs of w with properties {…}`, `delay 1`,
/// `execute javascript js`, `t contains …` is not one. `get`, `set` of application objects are sent by the evaluator
/// on its own and are no Command unless written.
struct Command final : Expression {
  Command() : Expression(Kind::command) {}
  const Term* term = nullptr; ///< row of a terminology that outlives the tree
  ExpressionPointer direct;   ///< null when none was written
  std::vector<std::pair<ParameterTerm, ExpressionPointer>> parameters;
  /// `count windows`; `count of windows`; `window 1 exists`. For the printer only.
  enum class Form { plain, withOf, objectFirst };
  Form form = Form::plain;
};

/// A message through the Objective-C bridge: `NSString's stringWithString:s`, `obj's setValue:v forKey:k`,
/// `current application's NSDate's |date|()`, `alloc()` of a foreign class is a HandlerCall decided at run time.
struct ObjectiveCMessage final : Expression {
  ObjectiveCMessage() : Expression(Kind::message) {}
  ExpressionPointer receiver;               ///< null: `my` was not written and there is none (a syntax error elsewhere)
  std::vector<std::string> parts;           ///< "initWithData", "encoding": without the colons
  std::vector<ExpressionPointer> arguments; ///< as many as parts
  std::string selector;                     ///< Resolver: the parts, each with its colon
};

struct Parenthesized final : Expression {
  Parenthesized() : Expression(Kind::parenthesized) {}
  ExpressionPointer inner;
};

[[nodiscard]] inline const Expression& withoutParentheses(const Expression& expression) {
  const Expression* inner = &expression;
  while (inner->kind == Expression::Kind::parenthesized)
    inner = static_cast<const Parenthesized&>(*inner).inner.get();
  return *inner;
}

// ----------------------------------------------------------------- statements

struct Statement {
  enum class Kind {
    expression,      ///< ExpressionStatement
    set,             ///< Assignment (`set`, `copy`)
    ifElse,          ///< If
    repeat,          ///< Repeat
    exitRepeat,      ///< Simple
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

struct SimpleStatement final : Statement { // exit repeat
  explicit SimpleStatement(Kind kind) : Statement(kind) {}
};

/// `continue f(x)`, `continue quit`: hands the call on to the parent of the script.
struct ContinueStatement final : Statement {
  ContinueStatement() : Statement(Kind::continueHandler) {}
  ExpressionPointer call; ///< a HandlerCall or a Command
};

struct ExpressionStatement final : Statement {
  ExpressionStatement() : Statement(Kind::expression) {}
  ExpressionPointer expression;
};

/// `set x to v`, `set {a, b} to xs`, `set name of w to v`, `copy v to x`. The target is a variable, a property or
/// element access, an insertion point, or a list or record of such.
struct Assignment final : Statement {
  enum class Form { set, copy };
  Assignment() : Statement(Kind::set) {}
  Form form = Form::set;
  ExpressionPointer target;
  ExpressionPointer value;
};

struct If final : Statement {
  struct Branch {
    ExpressionPointer condition;
    Block body;
  };
  If() : Statement(Kind::ifElse) {}
  std::vector<Branch> branches;
  std::optional<Block> otherwise;
  bool onOneLine = false; ///< `if x then return 1`
};

struct Repeat final : Statement {
  enum class Form { forever, times, whileTrue, untilTrue, range, items };
  Repeat() : Statement(Kind::repeat) {}
  Form form = Form::forever;
  ExpressionPointer condition;        ///< times: the count; whileTrue, untilTrue: the condition
  std::unique_ptr<Variable> variable; ///< range, items
  ExpressionPointer from, to, by;     ///< range; `by` may be null
  ExpressionPointer items;            ///< items
  Block body;
};

struct Tell final : Statement {
  Tell() : Statement(Kind::tell) {}
  ExpressionPointer target;
  Block body;
  bool onOneLine = false; ///< `tell x to …`
};

struct Try final : Statement {
  Try() : Statement(Kind::tryBlock) {}
  Block body;
  bool hasHandler = false;
  std::unique_ptr<Variable> message, number, from, partialResult, to; ///< null where not bound
  /// `on error number -128`: the handler takes errors of that number only. Then `number` is null.
  ExpressionPointer onlyNumber;
  Block handler;
};

struct Return final : Statement {
  Return() : Statement(Kind::returning) {}
  ExpressionPointer value; ///< null: returns nothing
};

struct RaiseError final : Statement {
  RaiseError() : Statement(Kind::error) {}
  ExpressionPointer message, number, from, partialResult, to; ///< null where not written
};

struct Considering final : Statement {
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
  Considering() : Statement(Kind::considering) {}
  std::vector<Attribute> considered;
  std::vector<Attribute> ignored;
  Block body;
};

struct Timeout final : Statement {
  Timeout() : Statement(Kind::timeout) {}
  ExpressionPointer seconds;
  Block body;
};

struct Transaction final : Statement {
  Transaction() : Statement(Kind::transaction) {}
  ExpressionPointer session; ///< null where not written
  Block body;
};

struct UsingTerms final : Statement {
  UsingTerms() : Statement(Kind::usingTerms) {}
  ExpressionPointer application;
  Block body;
};

struct Declare final : Statement {
  enum class Scope { global, local };
  Declare() : Statement(Kind::declare) {}
  Scope scope = Scope::local;
  std::vector<std::unique_ptr<Variable>> variables;
};

struct PropertyDefinition final : Statement {
  PropertyDefinition() : Statement(Kind::property) {}
  Label name;
  ExpressionPointer value;
};

/// A formal parameter: a variable, or a list of such to be taken apart (`on f({a, b})`), with an optional default
/// (`given x:y : 3`).
struct Parameter {
  ExpressionPointer pattern;
  ExpressionPointer defaultValue;
};

struct HandlerDefinition final : Statement {
  HandlerDefinition() : Statement(Kind::handler) {}
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

struct ScriptDefinition final : Statement {
  ScriptDefinition() : Statement(Kind::script) {}
  std::string name; ///< empty for `script … end script` without a name
  Block body;
  const ScriptLayout* layout = nullptr; ///< Resolver
  std::unique_ptr<Variable> binding;    ///< Resolver: the variable that the name stands for; null without a name
};

struct Use final : Statement {
  enum class What { appleScript, scriptingAdditions, framework, application, script };
  Use() : Statement(Kind::use) {}
  What what = What::appleScript;
  std::string name;                   ///< framework, application, script
  std::optional<std::string> version; ///< `version "2.4"`
  std::string alias;                  ///< `use Safari : application "Safari"`
  bool byID = false;                  ///< `use application id "ID"`
  bool imports = true;                ///< false: `without importing`
};

// ---------------------------------------------------------------- the whole

/// A parsed script. The text and the tree live together: ranges point into `source`.
///
/// `body` holds, in the order written: uses, properties, handlers, scripts, and the statements of the implicit run
/// handler. Whether there is an explicit `on run` is for the evaluator to see; both at once are a syntax error.
struct SyntaxTree {
  std::string source;
  Block body;

  /// Dictionaries whose words the script may use somewhere, the language's own among them.
  std::vector<const Terminology*> terminologies;
  /// Rows for commands written as raw codes (`«event coregetd»`), which no dictionary has.
  std::deque<Term> rawCommands;
};

} // namespace tabwright::applescript
