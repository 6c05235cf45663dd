#pragma once

#include "applescript/events/ApplicationDirectory.h"

namespace tabwright::applescript::test {

/// A few dictionaries for tests of the parser: "Google Chrome" (com.google.chrome), "Safari" (com.apple.safari) and
/// "System Events" (com.apple.systemevents), with the words that scripts use most. There are no applications behind
/// them.
class SyntaxDictionaries final : public ApplicationDirectory {
public:
  [[nodiscard]] const Terminology* terminologyByID(std::string_view bundleIdentifier) const override;
  [[nodiscard]] const Terminology* terminologyByName(std::string_view name) const override;
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByID(std::string_view) override { return nullptr; }
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByName(std::string_view) override { return nullptr; }
};

} // namespace tabwright::applescript::test
