#include "app/TerminalHost.h"

#include "app/FailureReport.h"

#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <iostream>
#include <unistd.h>

namespace tabwright::app {

bool TerminalHost::isTerminal() {
  return ::isatty(STDIN_FILENO) == 1;
}

namespace {

std::optional<std::string> nextLine() {
  std::string line;
  if (std::getline(std::cin, line))
    return line;
  std::cerr << '\n'; // what comes next doesn't go on behind the question
  return std::nullopt;
}

} // namespace

std::optional<std::string> TerminalHost::ask(const std::string& question) {
  if (!isTerminal())
    return std::nullopt;
  std::cerr << question << ' ' << std::flush;
  return nextLine();
}

platform::Task<std::optional<std::string>> TerminalHost::askInterruptibly(std::string question) {
  if (!isTerminal())
    co_return std::nullopt;
  // A duplicate, as the stream closes its descriptor; the terminal hands out whole lines.
  boost::asio::posix::stream_descriptor input(co_await boost::asio::this_coro::executor);
  input.assign(::dup(STDIN_FILENO));
  std::cerr << question << ' ' << std::flush;
  // Only the wait is asynchronous. Once something is there a line is, so reading it doesn't block.
  co_await input.async_wait(boost::asio::posix::stream_descriptor::wait_read, boost::asio::use_awaitable);
  co_return nextLine();
}

bool TerminalHost::isYes(const std::string& answer) {
  const char first = answer.empty() ? 'n' : answer.front();
  // Questions are in the user's language: “j” for the German “ja”.
  return first == 'y' || first == 'Y' || first == 'j' || first == 'J';
}

platform::Task<void> TerminalHost::requestConfirmation(intents::LocalizedText question) {
  if (!isYes(ask(question.text() + " [y/N]").value_or("")))
    throw intents::ConfirmationRefused();
  co_return;
}

void TerminalHost::notice(const platform::Notice& notice) {
  std::cerr << noticeReport(notice, ReportForm::sentence);
}

} // namespace tabwright::app
