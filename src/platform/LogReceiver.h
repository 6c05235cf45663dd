#pragma once

#include "platform/Logger.h"

#include <functional>
#include <string_view>

namespace tabwright::platform {

/// Takes each line of the log: level, category, text. Called from any thread, also from several at once. The views are
/// valid during the call alone. No lock is held then, so a receiver may take its time; it must not log itself, which
/// would come back to it.
using LogReceiver = std::function<void(LogLevel level, std::string_view category, std::string_view text)>;

/// Makes `receiver` take all lines of `lowestLevel` and above in place of the one before. An empty receiver switches
/// the log off, as it is when the program starts. Calls of the former one may still be under way in other threads.
void setLogReceiver(LogLevel lowestLevel, LogReceiver receiver);

/// Takes the lines of `lowestLevel` and above too while it lives, whatever else receives them. Calls may still be under
/// way in other threads when it has gone.
class LogListener {
public:
  /// Lines that are written from then on are taken, in no order with those of other threads.
  LogListener(LogLevel lowestLevel, LogReceiver receiver);
  ~LogListener();
  LogListener(const LogListener&) = delete;
  LogListener& operator=(const LogListener&) = delete;
};

} // namespace tabwright::platform
