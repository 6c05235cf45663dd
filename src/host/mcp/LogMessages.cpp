#include "host/mcp/LogMessages.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tabwright::host {

namespace {

using platform::LogLevel;

struct LevelRow {
  std::string_view name;
  LogLevel lowest;
};

// The program has no level between info and error, so whoever asks for “notice” or more gets the errors.
constexpr auto levels = std::to_array<LevelRow>({{"debug", LogLevel::debug},
                                                 {"info", LogLevel::info},
                                                 {"notice", LogLevel::error},
                                                 {"warning", LogLevel::error},
                                                 {"error", LogLevel::error},
                                                 {"critical", LogLevel::error},
                                                 {"alert", LogLevel::error},
                                                 {"emergency", LogLevel::error}});

} // namespace

LogLevel logLevelFor(std::string_view level) {
  // Exactly as the protocol spells them.
  const auto row = std::ranges::find(levels, level, &LevelRow::name);
  if (row != levels.end())
    return row->lowest;
  std::string names;
  for (const LevelRow& known : levels)
    names.append(names.empty() ? "" : ", ").append(known.name);
  throw rpc::RpcError(rpc::ErrorCode::invalidParams, "“level” must be one of " + names + ".");
}

platform::LogReceiver logMessagesTo(rpc::Peer::Notifier client) {
  return [client = std::move(client)](LogLevel level, std::string_view category, std::string_view text) {
    const auto name = std::ranges::find(levels, level, &LevelRow::lowest);
    // Lines of errors are the program's worst, "error" for a client that asked for "notice" as well.
    client("notifications/message",
           {{"level", level == LogLevel::error ? "error" : name->name}, {"logger", category}, {"data", text}});
  };
}

} // namespace tabwright::host
