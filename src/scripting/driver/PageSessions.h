#pragma once

#include "devtools/Session.h"
#include "platform/Mutex.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace tabwright::scripting {

/// The pages of one browser that we are attached to, each attached to once, when it is first needed. Sessions are
/// shared, and kept until their page is gone: so the state of a page's navigations isn't lost between two calls. Safe
/// to use from any thread.
class PageSessions {
public:
  explicit PageSessions(std::shared_ptr<devtools::Connection> connection) : connection_(std::move(connection)) {}

  /// The session of a target, made where there is none. Throws DevToolsFailure; `refused` when there is no such target.
  std::shared_ptr<devtools::Session> require(const std::string& targetID, const platform::CallLimits& limits);

  /// The addresses to which pages are on their way now, by target. Only of pages that we are attached to; asks none.
  [[nodiscard]] std::unordered_map<std::string, std::string> destinations();

private:
  std::shared_ptr<devtools::Connection> connection_;
  platform::Mutex mutex_;
  std::unordered_map<std::string, std::shared_ptr<devtools::Session>> sessions_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
