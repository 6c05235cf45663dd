#include "applescript/syntax/ParseCommands.h"

#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"
#include "applescript/syntax/Prepositions.h"
#include "applescript/terminology/FoldedWords.h"

#include <algorithm>
#include <ranges>
#include <utility>

// Commands of dictionaries and calls of the script's own handlers. A command's parameters begin with words of its row;
// while its arguments are read, those words end an expression (`offset of "a" in "b"`: `in` is no container there).
// Brackets shield what they hold: inside of them the words of commands around mean nothing. Parameters may come in any
// order; the direct one only first.
namespace tabwright::applescript {

namespace {

struct FoundParameter {
  const ParameterTerm* term = nullptr;
  std::size_t tokens = 0;
};

/// The parameter not given yet whose words stand that many tokens ahead; of several the one of most words (`saving in`
/// before `saving`).
FoundParameter findParameter(const ScriptParser& p, const Command& command, std::size_t ahead = 0) {
  const Term& term = *command.term;
  FoundParameter best;
  if (p.token(ahead).kind != Token::Kind::word)
    return best;
  const auto isGiven = [&](FourCharCode code) {
    return std::ranges::any_of(command.parameters, [code](const auto& given) { return given.first.code == code; });
  };
  for (const ParameterTerm& parameter : term.parameters) {
    std::size_t count = 0;
    bool matches = !isGiven(parameter.code);
    for (const auto word : std::views::split(parameter.words, ' ')) {
      const Token& next = p.token(ahead + count++);
      matches = matches && next.kind == Token::Kind::word &&
                equalFolded(next.text, std::string_view(word.begin(), word.end()));
    }
    if (matches && count > best.tokens)
      best = {&parameter, count};
  }
  if (best.term || !p.token(ahead).is(Keyword::in))
    return best;
  // A place may be given with `in` as well as with `at`.
  const auto place = std::ranges::find_if(term.parameters, [&](const ParameterTerm& parameter) {
    return parameter.code == keywords::insertionLocation && parameter.words == "at" && !isGiven(parameter.code);
  });
  return place == term.parameters.end() ? best : FoundParameter{&*place, 1};
}

ExpressionPointer parseArgumentValue(ScriptParser& p, FourCharCode code) {
  // A class alone: as an expression its plural would be all elements, and what stands behind it a key.
  if (code == keywords::elementClass) {
    const std::size_t start = p.offset();
    while (p.at(Keyword::the))
      p.advance();
    if (auto found = acceptClass(p))
      return p.finish(std::make_unique<Literal>(Value(std::move(found->name))), start);
  }
  // `at end` alone is the end of what the `tell` addresses.
  const bool isPlace = p.at(Keyword::beginning) || p.at(Keyword::end);
  if (code == keywords::insertionLocation && isPlace && !p.token(1).is(Keyword::of) && !p.token(1).is(Keyword::in))
    return parseKey(p);
  return parseExpression(p);
}

/// A parameter's words and its value; false when none stands at the cursor.
bool parseArgument(ScriptParser& p, Command& command) {
  const auto [parameter, tokens] = findParameter(p, command);
  if (!parameter)
    return false;
  p.advance(tokens);
  command.parameters.emplace_back(*parameter, nullptr); // from here its words don't end an expression any more
  const std::size_t place = command.parameters.size() - 1;
  command.parameters[place].second = parseArgumentValue(p, parameter->code);
  return true;
}

// `with a, b and c` and `without d` set parameters to true and false.
bool parseSwitches(ScriptParser& p, Command& command) {
  if (!p.at(Keyword::with) && !p.at(Keyword::without))
    return false;
  if (!findParameter(p, command, 1).term)
    return false;
  const bool value = p.at(Keyword::with);
  do {
    p.advance();
    const auto [parameter, tokens] = findParameter(p, command);
    if (!parameter)
      p.fail("parameter name");
    auto literal = std::make_unique<Literal>(Value(value));
    literal->range = p.token().range;
    p.advance(tokens);
    command.parameters.emplace_back(*parameter, std::move(literal));
  } while ((p.at(Symbol::comma) || p.at(Keyword::and_)) && findParameter(p, command, 1).term);
  return true;
}

/// Everything behind a command's words that is its own, until nothing fits any more.
void parseArguments(ScriptParser& p, Command& command) {
  const auto takes = [&](FourCharCode code) {
    return std::ranges::find(command.term->parameters, code, &ParameterTerm::code) != command.term->parameters.end();
  };
  // `make tab in w`: `new` may be left out.
  const bool isMake = takes(keywords::elementClass) && takes(keywords::insertionLocation);
  while (true) {
    if (parseArgument(p, command) || parseSwitches(p, command))
      continue;
    const bool isFirst = !command.direct && command.parameters.empty();
    if (isFirst && isMake) {
      const std::size_t start = p.offset();
      if (auto found = acceptClass(p)) {
        const auto row = std::ranges::find(command.term->parameters, keywords::elementClass, &ParameterTerm::code);
        command.parameters.emplace_back(*row,
                                        p.finish(std::make_unique<Literal>(Value(std::move(found->name))), start));
        continue;
      }
    }
    // Anything else at this place is the direct parameter, which stands in front of all others.
    if (!isFirst || command.term->directParameter == Term::DirectParameter::none || !canStartExpression(p))
      return;
    command.direct = parseExpression(p);
  }
}

/// `(a, b)`, from the opening bracket.
std::vector<ExpressionPointer> parseCallArguments(ScriptParser& p) {
  const auto commandsAround = std::exchange(p.activeCommands, {});
  std::vector<ExpressionPointer> arguments;
  p.advance();
  if (!p.accept(Symbol::closeParenthesis))
    p.parseItems(Symbol::closeParenthesis, [&] { arguments.push_back(parseExpression(p)); });
  p.activeCommands = commandsAround;
  return arguments;
}

/// `from a to b`, also with commas between.
void parsePrepositions(ScriptParser& p, HandlerCall& call) {
  while (true) {
    // A comma counts only in front of a preposition: else it separates items of what is around.
    const bool hasComma = p.at(Symbol::comma);
    const auto [preposition, tokens] = findPreposition(p, hasComma ? 1 : 0);
    if (tokens == 0)
      return;
    p.advance(tokens + (hasComma ? 1 : 0));
    call.labelled.emplace_back(preposition, parseExpression(p));
  }
}

void parseGiven(ScriptParser& p, HandlerCall& call) {
  // `given a:x, b:y`, or the switches `with a and b` and `without c`.
  if (p.accept(Keyword::given)) {
    do {
      if (!p.isLabel())
        p.fail("identifier");
      std::string label(p.token().text);
      p.advance(2);
      call.labelled.emplace_back(std::move(label), parseExpression(p));
    } while (p.at(Symbol::comma) && p.isLabel(1) && p.accept(Symbol::comma));
    return;
  }
  const bool value = p.at(Keyword::with);
  do {
    p.advance();
    if (!p.token().isName())
      p.fail("identifier");
    auto literal = std::make_unique<Literal>(Value(value));
    literal->range = p.token().range;
    call.labelled.emplace_back(p.token().text, std::move(literal));
    p.advance();
  } while ((p.at(Symbol::comma) || p.at(Keyword::and_)) && p.token(1).isName());
}

} // namespace

bool isStoppedAt(const ScriptParser& p, std::size_t ahead) {
  return std::ranges::any_of(p.activeCommands,
                             [&](const Command* command) { return findParameter(p, *command, ahead).term != nullptr; });
}

std::pair<std::string_view, std::size_t> findPreposition(const ScriptParser& p, std::size_t ahead) {
  for (const Preposition& row : prepositions) {
    if (p.token(ahead).is(row.first) && (row.second == Keyword::none || p.token(ahead + 1).is(row.second)))
      return {row.name, row.second == Keyword::none ? 1 : 2};
  }
  return {{}, 0};
}

ExpressionPointer parseCommand(ScriptParser& p, const Term& term, std::size_t words) {
  const std::size_t start = p.offset();
  auto command = std::make_unique<Command>();
  command->term = &term;
  p.advance(words);
  p.activeCommands.push_back(command.get());
  parseArguments(p, *command);
  p.activeCommands.pop_back();
  return p.finish(std::move(command), start);
}

// `count of windows > 0` compares, where `count windows > 0` would count a comparison.
ExpressionPointer parseCount(ScriptParser& p, std::size_t words) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  auto command = std::make_unique<Command>();
  command->term = p.scope.findCommand(events::count);
  command->form = Command::Form::withOf;
  p.advance(words + 1);
  command->direct = parseChain(p);
  return p.finish(std::move(command), start);
}

ExpressionPointer parseCall(ScriptParser& p, std::string name, std::size_t startOffset) {
  auto call = std::make_unique<HandlerCall>();
  call->name = std::move(name);
  call->arguments = parseCallArguments(p);
  return p.finish(std::move(call), startOffset);
}

bool startsLabels(const ScriptParser& p, std::size_t ahead) {
  const Token& next = p.token(ahead);
  return next.is(Keyword::of) || next.is(Keyword::in) || next.is(Keyword::given) ||
         findPreposition(p, ahead).second > 0;
}

// Only a handler that the script defines with labels is called by them: `f of x` would else be a property.
bool startsLabelledCall(const ScriptParser& p) {
  return p.labelledHandlers.contains(p.token().text) &&
         (startsLabels(p, 1) || p.token(1).is(Keyword::with) || p.token(1).is(Keyword::without));
}

ExpressionPointer parseLabelledCall(ScriptParser& p, std::string name, std::size_t startOffset) {
  const ScriptParser::Nesting nesting(p);
  auto call = std::make_unique<HandlerCall>();
  call->name = std::move(name);
  call->isLabelled = true;
  if (p.accept(Keyword::of) || p.accept(Keyword::in))
    call->direct = parseExpression(p);
  parsePrepositions(p, *call);
  while (p.at(Keyword::given) || p.at(Keyword::with) || p.at(Keyword::without))
    parseGiven(p, *call);
  return p.finish(std::move(call), startOffset);
}

} // namespace tabwright::applescript
