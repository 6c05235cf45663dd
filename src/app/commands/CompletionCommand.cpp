// The scripts for the shells are resources and know nothing of commands: they ask the program, by its hidden command,
// at each word. Tabs and windows are then asked of the frontmost browser, on a loop of this thread. An action that
// takes longer than somebody waits at a prompt is cancelled, and its end waited for, as it writes to what stands here.
#include "app/BrowserListing.h"
#include "app/Completion.h"
#include "app/Composition.h"
#include "app/commands/Commands.h"
#include "intents/EntityDeclaration.h"
#include "intents/UsageError.h"
#include "tabwright_appResources.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <chrono>
#include <exception>
#include <iostream>
#include <optional>

namespace tabwright::app {
namespace {

namespace asio = boost::asio;

// A person waits at a prompt, and the browser may hang.
constexpr std::chrono::milliseconds promptPatience{1500};

/// Nobody is asked while words are completed.
class NobodyToAsk final : public intents::ActionHost {
public:
  platform::Task<void> requestConfirmation(intents::LocalizedText /*question*/) override {
    throw intents::ConfirmationRefused();
    co_return;
  }
  void notice(const platform::Notice& /*notice*/) override {}
};

// The tabs or windows that the browser has now; none when it isn't there or doesn't answer in time.
std::vector<Candidate> thingsIn(const host::Catalogue& catalogue, const intents::ValueType& type) {
  asio::io_context context(1);
  asio::cancellation_signal cancel;
  NobodyToAsk nobody;
  std::optional<host::ActionResult> list;
  asio::co_spawn(context, listing(catalogue, type, {}, nobody),
                 asio::bind_cancellation_slot(
                     cancel.slot(), [&](const std::exception_ptr& failure, std::optional<host::ActionResult> result) {
                       if (!failure)
                         list = std::move(result);
                     }));
  // A failure offers nothing: no prompt is the place to tell of it.
  context.run_for(promptPatience);
  if (!context.stopped()) {
    cancel.emit(asio::cancellation_type::all);
    context.run();
  }
  std::vector<Candidate> things;
  const boost::json::array* items = list ? list->value.if_array() : nullptr;
  if (!items)
    return things;
  for (const boost::json::value& item : *items)
    things.push_back(
        {.word = shortReference(item.at("fullID").as_string()), .meaning = type.entity->displayRepresentation(item)});
  return things;
}

} // namespace

ExitCode completion(const std::string& shell) {
  if (shell == "bash")
    std::cout << resources::tabwright_bash;
  else if (shell == "zsh")
    std::cout << resources::tabwright_zsh;
  else if (shell == "fish")
    std::cout << resources::tabwright_fish;
  else
    throw intents::UsageError("There is no completion for “" + shell + "”: choose bash, zsh or fish.");
  return ExitCode::done;
}

ExitCode complete(const CLI::App& program, const std::vector<std::string>& words) {
  const Composition composition;
  const host::Catalogue& catalogue = composition.catalogue();
  const Completion completion = completionOf(program, catalogue, words,
                                             [&](const intents::ValueType& type) { return thingsIn(catalogue, type); });
  for (const Candidate& candidate : completion.candidates)
    std::cout << candidate.word << (candidate.meaning.empty() ? "" : "\t") << candidate.meaning << '\n';
  if (completion.takesFiles)
    std::cout << ":files\n";
  return ExitCode::done;
}

} // namespace tabwright::app
