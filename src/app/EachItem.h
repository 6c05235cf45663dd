#pragma once

#include "host/ParameterReader.h"
#include "intents/Intent.h"
#include "platform/Failure.h"

#include <boost/json/array.hpp>

#include <cstddef>
#include <optional>
#include <string>

namespace tabwright::app {

/// A list that was given for a parameter which takes one item. It may be empty, as when an action before the pipe has
/// found nothing.
struct GivenList {
  std::size_t parameter = 0; ///< its place among the parameters
  boost::json::array items;
};

/// The list among the parameters of a run with `--each`: that of a tab or window where there is one, else that of
/// another parameter. A list is a JSON array, perhaps empty, or objects one behind the other; a single object is a list
/// of one. Throws `UsageError` when there is none, or more than one.
[[nodiscard]] GivenList listForEach(const intents::Intent& action, const host::ParameterTexts& parameters);

/// Throws a `UsageError` that says what to do when a tab or window is given as a list of none or several. A list of one
/// is taken for its item, and lists for other parameters are left to their readers.
void requireNoList(const intents::Intent& action, const host::ParameterTexts& parameters);

/// An item as the value of its parameter, in the form that a command line gives: a text as it is, else JSON.
[[nodiscard]] std::string textOfItem(const boost::json::value& item);

/// An item on one line of at most 60 cells: what a tab or window is called, else its JSON. Never throws for an item
/// that doesn't fit the type.
[[nodiscard]] std::string nameOfItem(const intents::ValueType& type, const boost::json::value& item);

/// Some of the runs of `--each` failed; each has been told of where it happened. Thrown behind the last item, for the
/// exit code alone: it is 1 whatever the items failed with.
class EachFailure final : public platform::Failure {
public:
  EachFailure(std::string action, std::size_t failed, std::size_t all)
      : action_(std::move(action)), failed_(failed), all_(all) {}
  [[nodiscard]] std::string errorDescription() const override {
    return action_ + " failed for " + std::to_string(failed_) + " of " + std::to_string(all_) + " items.";
  }
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"EachFailure", "someFailed", {}}; }

private:
  std::string action_;
  std::size_t failed_;
  std::size_t all_;
};

} // namespace tabwright::app
