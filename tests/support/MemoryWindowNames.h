#pragma once

#include "actions/WindowNames.h"

#include <map>
#include <set>
#include <string>

namespace tabwright::testsupport {

/// Names of windows that last as long as the test.
class MemoryWindowNames final : public actions::WindowNames {
public:
  std::map<std::string, std::string> kept;

  void set(const std::string& fullID, const std::string& name) override { kept[fullID] = name; }
  std::map<std::string, std::string> names() const override { return kept; }
  void prune(const std::set<std::string>& fullIDs) override {
    std::erase_if(kept, [&](const auto& entry) { return !fullIDs.contains(entry.first); });
  }
};

} // namespace tabwright::testsupport
