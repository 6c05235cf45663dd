#pragma once

#include "applescript/events/ApplicationDirectory.h"

namespace tabwright::applescript {

/// A machine without applications.
class EmptyDirectory final : public ApplicationDirectory {
public:
  [[nodiscard]] const Terminology* terminologyByID(std::string_view) const override { return nullptr; }
  [[nodiscard]] const Terminology* terminologyByName(std::string_view) const override { return nullptr; }
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByID(std::string_view) override { return nullptr; }
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByName(std::string_view) override { return nullptr; }
};

} // namespace tabwright::applescript
