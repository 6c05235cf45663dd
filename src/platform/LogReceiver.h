#pragma once

#include "platform/Logger.h"

#include <functional>
#include <string_view>

namespace tabwright::platform {

/// Takes each line of the log: level, category, text. Called from any thread, also from several at once.
using LogReceiver = std::function<void(LogLevel level, std::string_view category, std::string_view text)>;

/// Makes `receiver` take all lines of `lowestLevel` and above in place of the one before. An empty receiver switches
/// the log off, as it is when the program starts. Calls of the former one may still be under way in other threads.
void setLogReceiver(LogLevel lowestLevel, LogReceiver receiver);

/// Takes the lines of `lowestLevel` and above too while it lives, whatever else receives them. Calls may still be under
/// way in other threads when it has gone.
class LogListener {
public:
  LogListener(LogLevel lowestLevel, LogReceiver receiver);
  ~LogListener();
  LogListener(const LogListener&) = delete;
  LogListener& operator=(const LogListener&) = delete;
};

} // namespace tabwright::platform
