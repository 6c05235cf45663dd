#pragma once

#include "platform/Failure.h"

#include <boost/json/value.hpp>

#include <string>
#include <string_view>

namespace tabwright::intents {

/// A value that doesn't fit where it was given. Readers of parameters turn it into a `UsageError`.
///
/// The place is told from the outside in, each level adding its name as the failure passes: a tab entity says
/// "title", the parameter that holds it makes it "targetTab.title". The whole sentence is then
///
///     targetTab.title can't be 5; give a text.
class ValueError final : public platform::Failure {
public:
  /// "... can't be CAME; give EXPECTED." `expected` is a noun phrase: "a text", "one of frontTab, specificTab". CAME is
  /// JSON, cut behind 60 bytes where a character ends.
  static ValueError unsuitable(const boost::json::value& came, std::string_view expected);
  /// The same of a text from a command line.
  static ValueError unsuitable(std::string_view came, std::string_view expected);
  /// Any other complaint; `sentence` goes on after the place, such as "lacks the property fullID."
  explicit ValueError(std::string sentence) : sentence_(std::move(sentence)) {}

  /// The same failure, seen from the level above: the place gets `name` in front.
  [[nodiscard]] ValueError within(std::string_view name) const;

  /// Place and sentence; only the sentence as long as no level has given its name.
  [[nodiscard]] std::string errorDescription() const override;
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"ValueError", "unsuitable", {}, platform::FailureClass::wrongUse};
  }

private:
  std::string place_;
  std::string sentence_;
};

} // namespace tabwright::intents
