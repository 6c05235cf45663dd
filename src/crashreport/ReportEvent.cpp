#include "crashreport/ReportEvent.h"

#include "platform/Failure.h"

#include <boost/core/demangle.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <typeinfo>

namespace tabwright::crashreport {
namespace {

constexpr std::size_t longestName = 120;

std::uint64_t secondsNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

/// Names are the program's own; a text with anything else in it isn't one, so it doesn't go out.
std::string ownName(const std::string& name) {
  constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_:<>,()*& ";
  const bool isName = !name.empty() && name.find_first_not_of(characters) == std::string::npos;
  return isName ? name.substr(0, longestName) : "unnamed";
}

std::string signalName(int signal) {
  switch (signal) {
  case SIGSEGV:
    return "SIGSEGV";
  case SIGBUS:
    return "SIGBUS";
  case SIGFPE:
    return "SIGFPE";
  case SIGILL:
    return "SIGILL";
  case SIGABRT:
    return "SIGABRT";
  default:
    return fmt::format("signal {}", signal);
  }
}

} // namespace

ReportEvent ReportEvent::of(const std::exception& error, const ProgramFacts& program) {
  Exception exception;
  if (const auto* failure = dynamic_cast<const platform::Failure*>(&error)) {
    const platform::FailureIdentity identity = failure->identity();
    exception.type = ownName(identity.type);
    exception.value = ownName(identity.caseName);
    if (identity.number)
      exception.value += fmt::format(" ({})", *identity.number);
  } else {
    exception.type = ownName(boost::core::demangle(typeid(error).name()));
  }
  return {.seconds = secondsNow(), .program = program, .message = {}, .exception = std::move(exception)};
}

ReportEvent ReportEvent::of(std::string_view message, const ProgramFacts& program) {
  return {.seconds = secondsNow(), .level = Level::info, .program = program, .message = std::string(message)};
}

ReportEvent ReportEvent::of(const CrashRecord& record) {
  Exception exception{.type = signalName(record.signal),
                      .value = fmt::format("code {}", record.code),
                      .signal = Signal{.number = record.signal, .code = record.code}};
  ReportEvent event{.seconds = record.seconds, .level = Level::fatal, .program = record.program, .message = {}};
  for (const StackFrame& frame : record.frames) {
    const auto module = std::ranges::find_if(
        record.modules, [&frame](const Module& candidate) { return candidate.contains(frame.address); });
    if (module == record.modules.end())
      continue;
    exception.frames.push_back(frame);
    const bool isKnown =
        std::ranges::any_of(event.modules, [&module](const Module& known) { return known.address == module->address; });
    if (!isKnown)
      event.modules.push_back(*module);
  }
  event.exception = std::move(exception);
  return event;
}

} // namespace tabwright::crashreport
