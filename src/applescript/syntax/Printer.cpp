#include "applescript/syntax/Printer.h"

#include "applescript/syntax/ConsideringWords.h"
#include "applescript/syntax/ExpressionPrinter.h"

#include <algorithm>
#include <string_view>

// Statements, one a line, indented by blocks. One-line forms stay on one line, down to the statement that opens a block
// of its own (`tell x to tell y`). Comments and empty lines are in no node: before a statement is written, the comments
// that the source has in front of its offset are, and an empty line where the source has one. So statements must be
// written in source order, and the end of each block named by an offset, or its last comments would slip behind it.
namespace tabwright::applescript {

namespace {

class StatementPrinter {
public:
  explicit StatementPrinter(const SyntaxTree& tree)
      : source_(tree.source), comments_(tree.comments), expressions_(tree) {}

  std::string run(const SyntaxTree& tree) {
    block(tree.body);
    comments(source_.size());
    return std::move(out_);
  }

private:
  void indent() { out_.append(expressions_.depth, '\t'); }
  void line(std::string_view text) {
    indent();
    out_ += text;
    out_ += '\n';
  }
  /// The statements of a block, a line each, with the comments and the empty lines between them.
  void block(const Block& body) {
    for (const auto& statement : body) {
      comments(statement->range.offset);
      emptyLine(statement->range.offset);
      indent();
      print(*statement);
      out_ += '\n';
    }
  }
  /// The rest of the line, the body, and `end` with its word.
  void blockWithEnd(const Statement& whole, const Block& body, std::string_view closing) {
    out_ += '\n';
    inner(body, whole.range.end());
    indent();
    out_ += "end ";
    out_ += closing;
  }
  /// A body, and the comments behind its last statement, up to an offset.
  void inner(const Block& body, std::size_t end) {
    ++expressions_.depth;
    isFirstOfBlock_ = true;
    block(body);
    comments(end);
    isFirstOfBlock_ = false;
    --expressions_.depth;
  }
  /// Writes the comments that stand in front of an offset and have not been written yet: each behind the line that it
  /// ends, or on a line of its own.
  void comments(std::size_t offset) {
    for (; nextComment_ < comments_.size() && comments_[nextComment_].offset < offset; ++nextComment_) {
      const SourceRange range = comments_[nextComment_];
      const std::string_view text = source_.substr(range.offset, range.length);
      const std::size_t lineStart = source_.find_last_of("\r\n", range.offset) + 1;
      const bool isBehindCode =
          source_.substr(lineStart, range.offset - lineStart).find_first_not_of(" \t") != std::string_view::npos;
      // A comment inside of a line comes here only with the next statement, and so goes to the line's end.
      if (isBehindCode && !out_.empty()) {
        // In place of the line end just written, which the comment gets.
        out_.back() = ' ';
        (out_ += text) += '\n';
      } else {
        emptyLine(range.offset);
        line(text);
      }
    }
  }
  /// Writes an empty line if the source has one in front of an offset, but for the beginning of a block.
  void emptyLine(std::size_t offset) {
    const std::size_t last = source_.substr(0, offset).find_last_not_of(" \t\r\n");
    const std::string_view blanks = source_.substr(last + 1, offset - last - 1);
    // CR LF is one line end, and counts once of either.
    const auto lineEnds = std::max(std::ranges::count(blanks, '\n'), std::ranges::count(blanks, '\r'));
    if (lineEnds > 1 && !out_.empty() && !isFirstOfBlock_)
      out_ += '\n';
    isFirstOfBlock_ = false;
  }
  /// The words and the expression; nothing at all for an absent one.
  template <class Node>
  void add(std::string_view words, const std::unique_ptr<Node>& expression) {
    if (expression)
      (out_ += words) += expressions_.print(*expression);
  }

  void print(const Statement& statement);
  void print(const If& statement);
  void print(const Repeat& statement);
  void print(const Tell& statement);
  void print(const Try& statement);
  void print(const RaiseError& statement);
  void print(const Considering& statement);
  void print(const Declare& statement);
  void print(const HandlerDefinition& handler);
  void print(const ScriptDefinition& script);
  void print(const Use& use);
  [[nodiscard]] std::string parameter(const Parameter& parameter) const;
  [[nodiscard]] std::string parameters(const HandlerDefinition& handler) const;

  const std::string_view source_;
  const std::vector<SourceRange>& comments_;
  /// The first comment not written yet.
  std::size_t nextComment_ = 0;
  bool isFirstOfBlock_ = false;
  ExpressionPrinter expressions_;
  std::string out_;
};

void StatementPrinter::print(const Statement& statement) {
  switch (statement.kind) {
  case Statement::Kind::expression:
    return add("", static_cast<const ExpressionStatement&>(statement).expression);
  case Statement::Kind::set: {
    const auto& assignment = static_cast<const Assignment&>(statement);
    const bool isSet = assignment.form == Assignment::Form::set;
    add(isSet ? "set " : "copy ", isSet ? assignment.target : assignment.value);
    return add(" to ", isSet ? assignment.value : assignment.target);
  }
  case Statement::Kind::ifElse:
    return print(static_cast<const If&>(statement));
  case Statement::Kind::repeat:
    return print(static_cast<const Repeat&>(statement));
  case Statement::Kind::exitRepeat:
    out_ += "exit repeat";
    return;
  case Statement::Kind::continueHandler:
    return add("continue ", static_cast<const ContinueStatement&>(statement).call);
  case Statement::Kind::tell:
    return print(static_cast<const Tell&>(statement));
  case Statement::Kind::tryBlock:
    return print(static_cast<const Try&>(statement));
  case Statement::Kind::returning:
    out_ += "return";
    return add(" ", static_cast<const Return&>(statement).value);
  case Statement::Kind::error:
    return print(static_cast<const RaiseError&>(statement));
  case Statement::Kind::considering:
    return print(static_cast<const Considering&>(statement));
  case Statement::Kind::timeout: {
    const auto& timeout = static_cast<const Timeout&>(statement);
    add("with timeout of ", timeout.seconds);
    out_ += " seconds";
    return blockWithEnd(timeout, timeout.body, "timeout");
  }
  case Statement::Kind::transaction: {
    const auto& transaction = static_cast<const Transaction&>(statement);
    out_ += "with transaction";
    add(" ", transaction.session);
    return blockWithEnd(transaction, transaction.body, "transaction");
  }
  case Statement::Kind::usingTerms: {
    const auto& usingTerms = static_cast<const UsingTerms&>(statement);
    add("using terms from ", usingTerms.application);
    return blockWithEnd(usingTerms, usingTerms.body, "using terms from");
  }
  case Statement::Kind::declare:
    return print(static_cast<const Declare&>(statement));
  case Statement::Kind::property: {
    const auto& property = static_cast<const PropertyDefinition&>(statement);
    out_ += "property " + expressions_.label(property.name);
    return add(" : ", property.value);
  }
  case Statement::Kind::handler:
    return print(static_cast<const HandlerDefinition&>(statement));
  case Statement::Kind::script:
    return print(static_cast<const ScriptDefinition&>(statement));
  case Statement::Kind::use:
    return print(static_cast<const Use&>(statement));
  }
}

void StatementPrinter::print(const If& statement) {
  // Each branch of a one-line form holds one statement.
  if (statement.onOneLine) {
    for (const If::Branch& branch : statement.branches) {
      add(&branch == &statement.branches.front() ? "if " : " else if ", branch.condition);
      out_ += " then ";
      print(*branch.body.front());
    }
    if (statement.otherwise) {
      out_ += " else ";
      print(*statement.otherwise->front());
    }
    return;
  }
  for (std::size_t i = 0; i < statement.branches.size(); ++i) {
    add(i == 0 ? "if " : "else if ", statement.branches[i].condition);
    out_ += " then\n";
    // Comments in front of the next `else` are of this branch.
    const std::size_t end = i + 1 < statement.branches.size() ? statement.branches[i + 1].condition->range.offset
                            : statement.otherwise             ? statement.otherwiseAt
                                                              : statement.range.end();
    inner(statement.branches[i].body, end);
    indent();
  }
  if (statement.otherwise) {
    out_ += "else\n";
    inner(*statement.otherwise, statement.range.end());
    indent();
  }
  out_ += "end if";
}

void StatementPrinter::print(const Repeat& statement) {
  out_ += "repeat";
  switch (statement.form) {
  case Repeat::Form::forever:
    break;
  case Repeat::Form::times:
    add(" ", statement.condition);
    out_ += " times";
    break;
  case Repeat::Form::whileTrue:
    add(" while ", statement.condition);
    break;
  case Repeat::Form::untilTrue:
    add(" until ", statement.condition);
    break;
  case Repeat::Form::range:
    add(" with ", statement.variable);
    add(" from ", statement.from);
    add(" to ", statement.to);
    add(" by ", statement.by);
    break;
  case Repeat::Form::items:
    add(" with ", statement.variable);
    add(" in ", statement.items);
    break;
  }
  blockWithEnd(statement, statement.body, "repeat");
}

void StatementPrinter::print(const Tell& statement) {
  add("tell ", statement.target);
  if (!statement.onOneLine)
    return blockWithEnd(statement, statement.body, "tell");
  out_ += " to ";
  print(*statement.body.front());
}

void StatementPrinter::print(const Try& statement) {
  out_ += "try\n";
  inner(statement.body, statement.hasHandler ? statement.handlerAt : statement.range.end());
  if (statement.hasHandler) {
    indent();
    out_ += "on error";
    add(" ", statement.message);
    add(" number ", statement.number);
    add(" number ", statement.onlyNumber);
    add(" from ", statement.from);
    add(" partial result ", statement.partialResult);
    add(" to ", statement.to);
    out_ += '\n';
    inner(statement.handler, statement.range.end());
  }
  indent();
  out_ += "end try";
}

void StatementPrinter::print(const RaiseError& statement) {
  out_ += "error";
  add(" ", statement.message);
  add(" number ", statement.number);
  add(" from ", statement.from);
  add(" partial result ", statement.partialResult);
  add(" to ", statement.to);
}

void StatementPrinter::print(const Considering& statement) {
  const auto attributes = [](const std::vector<Considering::Attribute>& list) {
    std::string text;
    for (const auto attribute : list)
      text += (text.empty() ? " " : ", ") + std::string(consideringWords(attribute));
    return text;
  };
  // `ignoring a but considering b` says the same the other way round.
  const bool considers = !statement.considered.empty();
  const std::string_view kind = considers ? "considering" : "ignoring";
  out_ += std::string(kind) + attributes(considers ? statement.considered : statement.ignored);
  if (considers && !statement.ignored.empty())
    out_ += " but ignoring" + attributes(statement.ignored);
  blockWithEnd(statement, statement.body, kind);
}

void StatementPrinter::print(const Declare& statement) {
  std::string names;
  for (const auto& variable : statement.variables)
    names += (names.empty() ? " " : ", ") + expressions_.print(*variable);
  out_ += (statement.scope == Declare::Scope::global ? "global" : "local") + names;
}

std::string StatementPrinter::parameter(const Parameter& parameter) const {
  const std::string pattern = expressions_.print(*parameter.pattern);
  return parameter.defaultValue ? pattern + " : " + expressions_.print(*parameter.defaultValue) : pattern;
}

// The parameters as they stand behind a handler's name. `on f` and `on f()` are one, so brackets are written for none
// too.
std::string StatementPrinter::parameters(const HandlerDefinition& handler) const {
  std::string text;
  if (!handler.isLabelled) {
    if (handler.direct)
      return " " + parameter(*handler.direct);
    for (const Parameter& positional : handler.positional)
      text += (text.empty() ? "" : ", ") + parameter(positional);
    return "(" + text + ")";
  }
  if (handler.direct)
    text += " of " + parameter(*handler.direct);
  return text + expressions_.labelled(handler.labelled, [this](const Parameter& each) { return parameter(each); });
}

void StatementPrinter::print(const HandlerDefinition& handler) {
  if (handler.name.ends_with(':')) { // `on setValue:v forKey:k`
    out_ += "on";
    std::string_view parts = handler.name;
    for (const Parameter& positional : handler.positional) {
      const auto colon = parts.find(':');
      out_ += " " + expressions_.name(parts.substr(0, colon)) + ":" + parameter(positional);
      parts.remove_prefix(colon + 1);
    }
    // Any name closes a handler.
    return blockWithEnd(handler, handler.body, "message");
  }
  const std::string name = expressions_.handlerName(handler.name);
  out_ += "on " + name + parameters(handler);
  blockWithEnd(handler, handler.body, name);
}

void StatementPrinter::print(const ScriptDefinition& script) {
  out_ += "script";
  if (!script.name.empty())
    out_ += " " + expressions_.name(script.name);
  blockWithEnd(script, script.body, "script");
}

void StatementPrinter::print(const Use& use) {
  out_ += "use ";
  if (!use.alias.empty())
    out_ += expressions_.name(use.alias) + " : ";
  const std::string name = ExpressionPrinter::text(use.name);
  switch (use.what) {
  case Use::What::appleScript:
    out_ += "AppleScript";
    break;
  case Use::What::scriptingAdditions:
    out_ += "scripting additions";
    break;
  case Use::What::framework:
    out_ += "framework " + name;
    break;
  case Use::What::application:
    out_ += (use.byID ? "application id " : "application ") + name;
    break;
  case Use::What::script:
    out_ += "script " + name;
    break;
  }
  if (use.version)
    out_ += " version " + ExpressionPrinter::text(*use.version);
  if (!use.imports)
    out_ += " without importing";
}

} // namespace

std::string print(const SyntaxTree& tree) {
  return StatementPrinter(tree).run(tree);
}

} // namespace tabwright::applescript
