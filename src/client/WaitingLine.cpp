// The line ends in a carriage return and has no line feed: the cursor waits at its start, so whatever comes next, such
// as the log, overwrites it, and taking it away needs no count of its cells. It must not wrap for that, so widths are
// estimated on the high side: no table of Unicode's properties is at hand in the client.
#include "client/WaitingLine.h"

#include "client/CallerSide.h"
#include "client/StandardStreams.h"
#include "client/TerminalText.h"
#include "session/UTF8.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace tabwright::client {
namespace {

constexpr std::chrono::milliseconds linePatience{2000};

// A character may take two cells, so half of the width is safe for any text that is not plain.
std::string shortened(const std::string& what, std::size_t width) {
  std::string line;
  std::size_t cells = 0;
  for (std::size_t at = 0; at < what.size();) {
    const session::UTF8Character character = session::characterAt(what, at);
    cells += character.point < 0x300 ? 1 : 2;
    if (cells + 1 > width)
      return line + "…";
    // The two controls that `terminalText` lets through.
    line += character.point == '\n' || character.point == '\t' ? " " : what.substr(at, character.length);
    at += std::max<std::size_t>(character.length, 1);
  }
  return line;
}

std::string lineFor(const std::string& what, int width) {
  constexpr std::string_view advice = " (Ctrl-C stops)";
  constexpr int leastWidth = 40;
  const std::size_t room = static_cast<std::size_t>(std::max(width, leastWidth)) - advice.size() - 1;
  // The cursor goes back to the line's begin: what comes next, such as the log, overwrites it.
  return shortened("Waiting for " + terminalText(what), room).append(advice) + "\r";
}

} // namespace

WaitingLine::WaitingLine(const std::string& what, std::function<Clock::time_point()> now,
                         std::function<void(const std::string&)> write, int width)
    : text_(lineFor(what, width)), now_(std::move(now)), write_(std::move(write)), since_(now_()) {}

std::chrono::milliseconds WaitingLine::left() const {
  if (isHeld_)
    return linePatience;
  return std::max(std::chrono::milliseconds(0),
                  std::chrono::ceil<std::chrono::milliseconds>(since_ + linePatience - now_()));
}

void WaitingLine::showIfDue() {
  if (isShown_ || left().count() > 0)
    return;
  isShown_ = true;
  write_(text_);
}

void WaitingLine::erase() {
  if (isShown_)
    write_(eraser);
  isShown_ = false;
  since_ = now_();
}

void WaitingLine::hold() {
  erase();
  isHeld_ = true;
}

void WaitingLine::resume() {
  isHeld_ = false;
  since_ = now_();
}

std::unique_ptr<WaitingLine> waitingLineAtTerminal(const std::string& what) {
  const TerminalFacts terminal = terminalFacts();
  if (!terminal.isError)
    return nullptr;
  return std::make_unique<WaitingLine>(
      what, WaitingLine::Clock::now, [](const std::string& text) { static_cast<void>(writeAll(STDERR_FILENO, text)); },
      terminal.width);
}

} // namespace tabwright::client
