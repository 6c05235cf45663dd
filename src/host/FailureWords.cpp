#include "host/FailureWords.h"

#include "platform/Utf8.h"

#include <fmt/core.h>

namespace tabwright::host {

namespace json = boost::json;

namespace {

json::object described(const platform::FailureIdentity& identity, const std::string& message) {
  // A sentence may quote bytes that came from outside, such as a file's name; JSON has none but UTF-8.
  return {{"type", identity.type},
          {"case", identity.caseName},
          {"number", identity.number ? json::value(*identity.number) : json::value(nullptr)},
          {"message", platform::wellFormed(message)}};
}

} // namespace

json::object noticeJson(const platform::Notice& notice) {
  json::object object = described(notice.identity, notice.sentence);
  if (notice.line)
    object["line"] = *notice.line;
  return object;
}

json::object failureJson(const platform::Failure& failure) {
  json::object object = described(failure.identity(), failure.errorDescription());
  if (failure.cause())
    object["cause"] = noticeJson(*failure.cause());
  return object;
}

std::string causeLine(const platform::Failure& failure) {
  const std::optional<platform::Notice>& cause = failure.cause();
  if (!cause)
    return {};
  // Some sentences of the catalogues quote what lies beneath them.
  const bool isTold = failure.errorDescription().find(cause->sentence) != std::string::npos;
  if (!cause->line)
    return isTold ? std::string() : cause->sentence;
  return isTold ? fmt::format("It is in line {} of the script.", *cause->line)
                : fmt::format("Line {}: {}", *cause->line, cause->sentence);
}

} // namespace tabwright::host
