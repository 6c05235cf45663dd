#pragma once

#include "applescript/SourceRange.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The nodes of expressions: see Tree.h.
namespace tabwright::applescript {

struct Expression;
using ExpressionPointer = std::unique_ptr<Expression>;

/// An expression: it has a value, or names a place, or both. Made by the parse functions through ScriptParser::finish,
/// which sets `range` and `height`; handled by kind, with `as` of Tree.h where one kind matters.
struct Expression {
  enum class Kind {
    literal,            ///< Literal
    list,               ///< ListLiteral
    record,             ///< RecordLiteral
    variable,           ///< Variable
    me,                 ///< Me
    it,                 ///< It
    currentApplication, ///< CurrentApplication
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
    parenthesized,      ///< Parenthesized
  };

  explicit Expression(Kind kind) : kind(kind) {}
  virtual ~Expression() = default;
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  const Kind kind;
  /// From the first token to the last; within the tree's source.
  SourceRange range;
  /// Levels of the tree from here down. The parser bounds it (ParserLimits::height), so that whoever walks the tree by
  /// recursion knows how deep it gets.
  std::uint32_t height = 1;
};

/// The base of each node, which gives it its kind; `as` reads `ownKind`.
template <Expression::Kind own>
struct ExpressionOf : Expression {
  static constexpr Kind ownKind = own;
  ExpressionOf() : Expression(own) {}
};

/// The written form of a reference's joint to its container: `name of w`, `name in w`, `w's name`. For the printer
/// only.
enum class Joint { of, in, possessive };

/// A number, text, boolean, class name, enumerator, `missing value`, `null`, or a constant (`pi`, `return`, `tab`).
/// `AppleScript`, as in `AppleScript's text item delimiters`, is the enumerator 'ascr'. Evaluating it gives the value
/// and can't fail.
struct Literal final : ExpressionOf<Expression::Kind::literal> {
  explicit Literal(Value value) : value(std::move(value)) {}
  Value value;
  /// The words as the dictionary has them, for constants whose value can't show them (`linefeed`, `pi`); else empty.
  std::string words;
};

/// `{1, x, f()}`, also empty; and the pattern `{a, b}` of an assignment or a parameter.
struct ListLiteral final : ExpressionOf<Expression::Kind::list> {
  std::vector<ExpressionPointer> items;
};

/// `{name:x, |my label|:y}`; and the pattern of an assignment. Labels are as written: one given twice is for the
/// evaluator to settle.
struct RecordLiteral final : ExpressionOf<Expression::Kind::record> {
  std::vector<std::pair<Label, ExpressionPointer>> fields;
};

/// A name of the script's own. `result` is one too: it stands for the value of the last statement unless the script
/// binds it. The parser knows the name only; where its value is kept the resolver finds out, once for all runs.
struct Variable final : ExpressionOf<Expression::Kind::variable> {
  explicit Variable(std::string name) : name(std::move(name)) {}
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

/// `me`: the script itself.
struct Me final : ExpressionOf<Expression::Kind::me> {};
/// `it`: the target of the enclosing `tell`, or the object under test in a `whose`.
struct It final : ExpressionOf<Expression::Kind::it> {};
/// `current application`: the program that runs the script; behind its `'s` stand classes and functions of the
/// Objective-C bridge.
struct CurrentApplication final : ExpressionOf<Expression::Kind::currentApplication> {};

/// `application "NAME"`, `application id "ID"`: the root of a reference. Not looked for before the run evaluates it.
struct ApplicationReference final : ExpressionOf<Expression::Kind::application> {
  enum class By { name, id };
  By by = By::name;
  /// A text literal lets the parser know the dictionary; anything else is only known to the run.
  ExpressionPointer designation;
};

/// `name of x`, `x's name`, `name` alone inside a `tell` (container null: the target), `tabID of r`.
struct PropertyAccess final : ExpressionOf<Expression::Kind::property> {
  /// Code of a dictionary's property with its words, or code 0 and a name of the script's own.
  Label property;
  ExpressionPointer container; ///< null: the target of the enclosing `tell`
  Joint joint = Joint::of;
};

/// `tab 3 of w`, `tab id "8" of w`, `tabs`, `every tab whose …`, `first window`, `characters 2 thru -1 of t`,
/// `item i of xs`, `some window`, `middle item`, `tab before tab 3`, `text 1 thru 5 of t`.
struct ElementAccess final : ExpressionOf<Expression::Kind::element> {
  /// One of `index` (a bare `tab x` too, unless x turns out to be a text), `middle`, `some`, `every`, `name`, `id`,
  /// `range`, `before`, `after`.
  using Form = ObjectSpecifier::Form;
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
struct InsertionPoint final : ExpressionOf<Expression::Kind::insertionPoint> {
  /// One of `beginning`, `end`, `before`, `after`.
  using Form = ObjectSpecifier::Form;
  Form form = Form::end;
  ExpressionPointer container; ///< before, after: the element beside it. Null: the target of the enclosing `tell`
  Joint joint = Joint::of;
};

/// `a reference to x`, `ref x`.
struct ReferenceTo final : ExpressionOf<Expression::Kind::referenceTo> {
  /// A reference keeps the place, not its value: a variable that is referred to lives in a cell
  /// (Variable::Place::cell).
  ExpressionPointer operand;
};

/// `not x`, `-x`, `+x`. A minus in front of a number makes a negative Literal instead.
struct Unary final : ExpressionOf<Expression::Kind::unary> {
  enum class Operator { negate, plus, logicalNot };
  Operator op = Operator::negate;
  ExpressionPointer operand;
};

/// Two operands and what joins them. All spellings of an operator (`is`, `=`, `equals`) are one; see Operators.h.
/// `logicalAnd` and `logicalOr` needn't evaluate their right side.
struct Binary final : ExpressionOf<Expression::Kind::binary> {
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
  Operator op = Operator::add;
  ExpressionPointer left;
  ExpressionPointer right;
};

/// `x as text`, `xs as {text, integer}` (the first that works).
struct Coercion final : ExpressionOf<Expression::Kind::coercion> {
  ExpressionPointer operand;
  /// A class literal, a list of types, or an expression that gives either.
  ExpressionPointer type;
};

/// A call of a handler of the script: `f(1, 2)`, `my f(x)`, `f(x) of s`, `s's f(x)`, `f from a to b given x:1`.
struct HandlerCall final : ExpressionOf<Expression::Kind::handlerCall> {
  /// Whose handler is called: `f(x)` is looked for in the `tell`'s script, the own one and those around it, `my f(x)`
  /// in the own one only, `f(x) of s` and `s's f(x)` in `object`.
  enum class Target { implicit, me, object };
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
struct Command final : ExpressionOf<Expression::Kind::command> {
  const Term* term = nullptr; ///< row of a terminology that outlives the tree
  ExpressionPointer direct;   ///< null when none was written
  /// In the order written. A switch (`with administrator privileges`) is a Literal of true or false here.
  std::vector<std::pair<ParameterTerm, ExpressionPointer>> parameters;
  /// `count windows`; `count of windows`; `window 1 exists`. For the printer only.
  enum class Form { plain, withOf, objectFirst };
  Form form = Form::plain;
};

/// A message through the Objective-C bridge: `NSString's stringWithString:s`, `obj's setValue:v forKey:k`,
/// `current application's NSDate's |date|()`, `alloc()` of a foreign class is a HandlerCall decided at run time.
struct ObjectiveCMessage final : ExpressionOf<Expression::Kind::message> {
  ExpressionPointer receiver;               ///< null: `my` was not written and there is none (a syntax error elsewhere)
  std::vector<std::string> parts;           ///< "initWithData", "encoding": without the colons
  std::vector<ExpressionPointer> arguments; ///< as many as parts
  std::string selector;                     ///< Resolver: the parts, each with its colon
};

/// Kept so that the printer gives back what was written.
struct Parenthesized final : ExpressionOf<Expression::Kind::parenthesized> {
  /// Never null. `withoutParentheses` of Tree.h looks through any number of brackets.
  ExpressionPointer inner;
};

} // namespace tabwright::applescript
