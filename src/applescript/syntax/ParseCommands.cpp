#include "applescript/syntax/Prepositions.h"
#include "applescript/syntax/ScriptParser.h"
#include "applescript/terminology/FoldedWords.h"

#include <utility>

// Commands of dictionaries and calls of the script's own handlers. A command's parameters begin with words of its row;
// while its arguments are read, those words end an expression (`offset of "a" in "b"`: `in` is no container there).
namespace tabwright::applescript {

std::pair<std::string_view, std::size_t> ScriptParser::findPreposition(std::size_t ahead) const {
  for (const Preposition& row : prepositions) {
    if (token(ahead).is(row.first) && (row.second == Keyword::none || token(ahead + 1).is(row.second)))
      return {row.name, row.second == Keyword::none ? 1 : 2};
  }
  return {{}, 0};
}

// ------------------------------------------------------------------- commands

ExpressionPointer ScriptParser::parseCommand(const Term& term, std::size_t words) {
  const std::size_t start = offset();
  auto command = std::make_unique<Command>();
  command->term = &term;
  advance(words);
  activeCommands_.push_back(command.get());
  parseArguments(*command);
  activeCommands_.pop_back();
  return finish(std::move(command), start);
}

void ScriptParser::parseArguments(Command& command) {
  const auto takes = [&](FourCharCode code) {
    return std::ranges::find(command.term->parameters, code, &ParameterTerm::code) != command.term->parameters.end();
  };
  // `make tab in w`: `new` may be left out.
  const bool isMake = takes(keywords::elementClass) && takes(keywords::insertionLocation);
  while (true) {
    if (parseArgument(command) || parseSwitches(command))
      continue;
    const bool isFirst = !command.direct && command.parameters.empty();
    if (isFirst && isMake) {
      const std::size_t start = offset();
      if (auto found = acceptClass()) {
        const auto row = std::ranges::find(command.term->parameters, keywords::elementClass, &ParameterTerm::code);
        command.parameters.emplace_back(*row, finish(std::make_unique<Literal>(Value(std::move(found->name))), start));
        continue;
      }
    }
    if (!isFirst || command.term->directParameter == Term::DirectParameter::none || !canStartExpression())
      return;
    command.direct = parseExpression();
  }
}

ScriptParser::FoundParameter ScriptParser::findParameter(const Command& command, std::size_t ahead) const {
  const Term& term = *command.term;
  FoundParameter best;
  if (token(ahead).kind != Token::Kind::word)
    return best;
  const auto isGiven = [&](FourCharCode code) {
    return std::ranges::any_of(command.parameters, [code](const auto& given) { return given.first.code == code; });
  };
  for (const ParameterTerm& parameter : term.parameters) {
    std::string_view words = parameter.words;
    std::size_t count = 0;
    bool matches = true;
    while (matches && !words.empty()) {
      const auto blank = words.find(' ');
      const Token& next = token(ahead + count);
      const std::string_view word = words.substr(0, blank);
      matches = next.kind == Token::Kind::word && equalFolded(next.text, word);
      words = blank == std::string_view::npos ? std::string_view() : words.substr(blank + 1);
      ++count;
    }
    matches = matches && !isGiven(parameter.code);
    if (matches && count > best.tokens)
      best = {&parameter, count};
  }
  if (best.term || !token(ahead).is(Keyword::in))
    return best;
  // A place may be given with `in` as well as with `at`.
  const auto place = std::ranges::find_if(term.parameters, [&](const ParameterTerm& parameter) {
    return parameter.code == keywords::insertionLocation && parameter.words == "at" && !isGiven(parameter.code);
  });
  return place == term.parameters.end() ? best : FoundParameter{&*place, 1};
}

bool ScriptParser::parseArgument(Command& command) {
  const auto [parameter, tokens] = findParameter(command);
  if (!parameter)
    return false;
  advance(tokens);
  command.parameters.emplace_back(*parameter, nullptr); // from here its words don't end an expression any more
  const std::size_t place = command.parameters.size() - 1;
  command.parameters[place].second = parseArgumentValue(parameter->code);
  return true;
}

ExpressionPointer ScriptParser::parseArgumentValue(FourCharCode code) {
  if (code == keywords::elementClass) {
    const std::size_t start = offset();
    while (token().is(Keyword::the))
      advance();
    if (auto found = acceptClass())
      return finish(std::make_unique<Literal>(Value(std::move(found->name))), start);
  }
  const bool isPlace = token().is(Keyword::beginning) || token().is(Keyword::end);
  if (code == keywords::insertionLocation && isPlace && !token(1).is(Keyword::of) && !token(1).is(Keyword::in))
    return parseKey();
  return parseExpression();
}

// `with a, b and c` and `without d` set parameters to true and false.
bool ScriptParser::parseSwitches(Command& command) {
  if (!token().is(Keyword::with) && !token().is(Keyword::without))
    return false;
  if (!findParameter(command, 1).term)
    return false;
  const bool value = token().is(Keyword::with);
  do {
    advance();
    const auto [parameter, tokens] = findParameter(command);
    if (!parameter)
      fail("parameter name");
    auto literal = std::make_unique<Literal>(Value(value));
    literal->range = token().range;
    advance(tokens);
    command.parameters.emplace_back(*parameter, std::move(literal));
  } while ((token().is(Symbol::comma) || token().is(Keyword::and_)) && findParameter(command, 1).term);
  return true;
}

// `count of windows > 0` compares, where `count windows > 0` would count a comparison.
ExpressionPointer ScriptParser::parseCount(std::size_t words) {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  auto command = std::make_unique<Command>();
  command->term = scope_.findCommand(events::count);
  command->form = Command::Form::withOf;
  advance(words + 1);
  command->direct = parseChain();
  return finish(std::move(command), start);
}

// ---------------------------------------------------------------------- calls

std::vector<ExpressionPointer> ScriptParser::parseCallArguments() {
  const auto commandsAround = std::exchange(activeCommands_, {});
  std::vector<ExpressionPointer> arguments;
  advance();
  if (!accept(Symbol::closeParenthesis)) {
    do
      arguments.push_back(parseExpression());
    while (accept(Symbol::comma));
    require(Symbol::closeParenthesis, "“,” or “)”");
  }
  activeCommands_ = commandsAround;
  return arguments;
}

ExpressionPointer ScriptParser::parseCall(std::string name, std::size_t startOffset) {
  auto call = std::make_unique<HandlerCall>();
  call->name = std::move(name);
  call->arguments = parseCallArguments();
  return finish(std::move(call), startOffset);
}

bool ScriptParser::startsLabelledArguments(std::string_view name) const {
  if (!labelledHandlers_.contains(name))
    return false;
  const Token& next = token(1);
  return next.is(Keyword::of) || next.is(Keyword::in) || next.is(Keyword::given) || next.is(Keyword::with) ||
         next.is(Keyword::without) || findPreposition(1).second > 0;
}

ExpressionPointer ScriptParser::parseLabelledCall(std::string name, std::size_t startOffset) {
  const Nesting nesting(*this);
  auto call = std::make_unique<HandlerCall>();
  call->name = std::move(name);
  call->isLabelled = true;
  if (accept(Keyword::of) || accept(Keyword::in))
    call->direct = parseExpression();
  parsePrepositions(*call);
  while (token().is(Keyword::given) || token().is(Keyword::with) || token().is(Keyword::without))
    parseGiven(*call);
  return finish(std::move(call), startOffset);
}

void ScriptParser::parsePrepositions(HandlerCall& call) {
  while (true) {
    const bool hasComma = token().is(Symbol::comma);
    const auto [preposition, tokens] = findPreposition(hasComma ? 1 : 0);
    if (tokens == 0)
      return;
    advance(tokens + (hasComma ? 1 : 0));
    call.labelled.emplace_back(preposition, parseExpression());
  }
}

void ScriptParser::parseGiven(HandlerCall& call) {
  if (accept(Keyword::given)) {
    do {
      if (!isLabel())
        fail("identifier");
      std::string label(token().text);
      advance(2);
      call.labelled.emplace_back(std::move(label), parseExpression());
    } while (token().is(Symbol::comma) && isLabel(1) && accept(Symbol::comma));
    return;
  }
  const bool value = token().is(Keyword::with);
  const auto isName = [this](std::size_t ahead) {
    const Token& next = token(ahead);
    return next.kind == Token::Kind::quotedName || (next.kind == Token::Kind::word && !isReserved(next.keyword));
  };
  do {
    advance();
    if (!isName(0))
      fail("identifier");
    auto literal = std::make_unique<Literal>(Value(value));
    literal->range = token().range;
    call.labelled.emplace_back(token().text, std::move(literal));
    advance();
  } while ((token().is(Symbol::comma) || token().is(Keyword::and_)) && isName(1));
}

} // namespace tabwright::applescript
