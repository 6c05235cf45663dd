// The browser that the parameters name is asked for its tabs or windows, else the frontmost one. A number among them
// becomes that item's JSON, just as an earlier command would have printed it; other words are taken for a reference and
// judged by the reader of parameters. A number that isn't there, and an empty line, are asked for again, since nothing
// has run yet.
#include "app/Choice.h"

#include "app/BrowserListing.h"
#include "app/ResultView.h"
#include "platform/AsciiCase.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <charconv>
#include <string_view>

namespace tabwright::app {
namespace {

std::string browserAmong(const host::ParameterTexts& parameters) {
  for (const auto& [name, text] : parameters) {
    if (platform::equalIgnoringCase(name, "targetContext"))
      return text;
  }
  return {};
}

// The number that an answer is, blanks around it left out; nothing for other texts.
std::optional<std::size_t> numberIn(std::string_view answer) {
  const std::size_t start = answer.find_first_not_of(" \t");
  const std::size_t end = answer.find_last_not_of(" \t");
  std::size_t number = 0;
  if (start == std::string_view::npos)
    return std::nullopt;
  const auto [rest, error] = std::from_chars(answer.data() + start, answer.data() + end + 1, number);
  if (error != std::errc{} || rest != answer.data() + end + 1)
    return std::nullopt;
  return number;
}

} // namespace

platform::Task<std::optional<std::string>> askForValue(const host::Catalogue& catalogue, const ActionRun& run,
                                                       const host::ParameterTexts& parameters,
                                                       const intents::NeedsValue& missing, RunCaller& caller,
                                                       intents::ActionHost& host) {
  if (!caller.canAsk())
    co_return std::nullopt;
  const intents::ParameterBase* parameter = catalogue.declaration(run.command.name).findParameter(missing.parameter());
  std::optional<host::ActionResult> items;
  if (parameter)
    items = co_await listing(catalogue, parameter->declaration().type, browserAmong(parameters), host);
  const boost::json::array* choices = items ? items->value.if_array() : nullptr;
  // Nothing to choose from: the plain question. Its cause, if any, says why the value at hand was refused.
  if (!choices || choices->empty())
    co_return co_await caller.ask(missing.cause() ? missing.cause()->sentence + "\n" + missing.question()
                                                  : missing.question());
  TableAdditions additions;
  additions.isNumbered = true;
  additions.places = co_await placesOf(catalogue, *items, host);
  const std::string prompt = fmt::format("{} [1-{}]:", parameter->declaration().title.text(), choices->size());
  std::string question = resultView(*items, run.terminalWidth, additions) + prompt;
  for (;;) {
    std::optional<std::string> answer = co_await caller.ask(question);
    if (!answer)
      co_return std::nullopt;
    const std::optional<std::size_t> number = numberIn(*answer);
    if (!number && answer->find_first_not_of(" \t") != std::string::npos)
      co_return std::move(answer); // a reference
    if (number && *number >= 1 && *number <= choices->size())
      co_return boost::json::serialize((*choices)[*number - 1]);
    question = fmt::format("A number from 1 to {}, please, or a reference.\n{}", choices->size(), prompt);
  }
}

} // namespace tabwright::app
