#include "scripting/driver/PageSessions.h"

#include <optional>

namespace tabwright::scripting {

std::shared_ptr<devtools::Session> PageSessions::require(const std::string& targetID,
                                                         const platform::CallLimits& limits) {
  {
    const platform::MutexLock lock(mutex_);
    // Closed pages go when somebody looks for another.
    std::erase_if(sessions_, [](const auto& entry) { return !entry.second->isAttached(); });
    const auto found = sessions_.find(targetID);
    if (found != sessions_.end())
      return found->second;
  }
  // Two threads may attach at once; that does no harm, and neither waits for the other's page.
  std::shared_ptr<devtools::Session> session =
      devtools::Session::attach(connection_, targetID, devtools::Session::Kind::page, limits);
  const platform::MutexLock lock(mutex_);
  sessions_[targetID] = session;
  return session;
}

std::unordered_map<std::string, std::string> PageSessions::destinations() {
  const platform::MutexLock lock(mutex_);
  std::unordered_map<std::string, std::string> found;
  for (const auto& [target, session] : sessions_) {
    if (const std::optional<std::string> address = session->destination())
      found.emplace(target, *address);
  }
  return found;
}

} // namespace tabwright::scripting
