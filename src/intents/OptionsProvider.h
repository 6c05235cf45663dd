#pragma once

#include <boost/json/value.hpp>

#include <optional>
#include <string>
#include <vector>

namespace tabwright::intents {

/// One choice that a parameter offers.
struct Option {
  /// The value itself, as `ValueTraits::fromJson` of the parameter's type reads it.
  boost::json::value value;
  std::string title; ///< shown to users, in their language
  std::string text;  ///< the shortest text that the parameter reads as this value
};

/// A titled group of choices. One choice may stand in several groups: a running browser is an installed one, too.
struct OptionSection {
  /// Stands before the group: "Running browsers".
  std::string label;
  std::vector<Option> options;
};

/// Gives the choices of a parameter that are only known at run time. Choices are offers: the parameter
/// takes other values of its type too.
class OptionsProvider {
public:
  virtual ~OptionsProvider() = default;

  /// The choices at this moment. May look at the machine, runs no script, and never fails: what can't be found out is
  /// left out. From any thread.
  [[nodiscard]] virtual std::vector<OptionSection> results() const = 0;
  /// The value that the parameter has as long as nobody gives one; none where it must be given. As quick as `results`,
  /// and as safe: every action that is made asks for it.
  [[nodiscard]] virtual std::optional<Option> defaultResult() const = 0;
};

} // namespace tabwright::intents
