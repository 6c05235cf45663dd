// A receiver over one spdlog logger whose sinks each have their own level. Categories are put into the text, since
// spdlog's own logger names would need a logger per category.
#include "platform/LogSinks.h"

#include "platform/LogReceiver.h"
#include "platform/linux/BaseDirectories.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <utility>

namespace tabwright::platform {
namespace {

/// As other programs of the desktop are told apart: by their application's id.
constexpr std::string_view subsystem = "com.tabwright.tabwright";
// A log must not fill a disk, however long a host runs: at most four megabytes are kept.
constexpr std::size_t bytesPerFile = 1'000'000;
constexpr std::size_t oldFiles = 3;

spdlog::level::level_enum spdlogLevel(LogLevel level) {
  switch (level) {
  case LogLevel::debug:
    return spdlog::level::debug;
  case LogLevel::info:
    return spdlog::level::info;
  case LogLevel::error:
    return spdlog::level::err;
  }
  return spdlog::level::err;
}

using OnLoss = std::function<void(const std::string& reason)>;

std::shared_ptr<spdlog::sinks::sink> fileSink(const std::filesystem::path& file, const OnLoss& onLoss) {
  try {
    // Lines may hold what users type and read, so the folder is open to its owner alone.
    ensurePrivateFolder(file.parent_path());
    return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(file.string(), bytesPerFile, oldFiles);
  } catch (const std::exception& error) {
    onLoss(error.what());
    return nullptr;
  }
}

// A full disk fails with every line, and one word of it is enough.
OnLoss onlyOnce(OnLoss onLoss) {
  return [onLoss = std::move(onLoss), isDone = std::make_shared<std::atomic_flag>()](const std::string& reason) {
    if (!isDone->test_and_set() && onLoss)
      onLoss("No log is kept: " + reason);
  };
}

} // namespace

std::filesystem::path defaultLogFile() {
  return stateHome() / "tabwright" / "tabwright.log";
}

LogLevel defaultFileLevel() {
  const char* wanted = std::getenv("TABWRIGHT_LOG_LEVEL");
  return wanted ? logLevelNamed(wanted).value_or(LogLevel::info) : LogLevel::info;
}

std::optional<LogLevel> logLevelNamed(std::string_view name) {
  if (name == "debug")
    return LogLevel::debug;
  if (name == "info")
    return LogLevel::info;
  if (name == "error")
    return LogLevel::error;
  return std::nullopt;
}

void installLogSinks(const LogSinks& sinks) {
  LogLevel lowest = LogLevel::error;
  const OnLoss onLoss = onlyOnce(sinks.onLoss);
  const auto logger = std::make_shared<spdlog::logger>("tabwright");
  logger->set_error_handler(onLoss);
  const auto add = [&](const std::shared_ptr<spdlog::sinks::sink>& sink, LogLevel level) {
    sink->set_level(spdlogLevel(level));
    logger->sinks().push_back(sink);
    lowest = std::min(lowest, level);
  };
  if (sinks.file) {
    if (const auto sink = fileSink(*sinks.file, onLoss))
      add(sink, sinks.fileLevel);
  }
  if (sinks.standardErrorLevel)
    add(std::make_shared<spdlog::sinks::ostream_sink_mt>(std::cerr, true), *sinks.standardErrorLevel);
  if (logger->sinks().empty()) {
    setLogReceiver(lowest, {});
    return;
  }
  // Levels are sorted out by `lowest` and by each sink; the logger lets everything through.
  logger->set_level(spdlog::level::trace);
  logger->set_pattern("[%Y-%m-%d %H:%M:%S.%e] [%l] %v");
  // Debug lines are many and wait in the buffer; those that matter have left the process when it dies.
  logger->flush_on(spdlog::level::info);
  setLogReceiver(lowest, [logger](LogLevel level, std::string_view category, std::string_view text) {
    logger->log(spdlogLevel(level), "[{}:{}] {}", subsystem, category, text);
  });
}

} // namespace tabwright::platform
