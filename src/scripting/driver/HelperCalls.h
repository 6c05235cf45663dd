#pragma once

#include "platform/CallLimits.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <string_view>

namespace tabwright::scripting {

/// The helper inside one browser, by whatever road it is reached: its functions are the same on all of them, and stand
/// in `resources/helper/worker.js`.
///
///     calls.perform("activateTab", {{"tab", 7}}, HelperCalls::Repeat::allowed, limits);
///
/// Safe to use from any thread; commands run side by side.
class HelperCalls {
public:
  virtual ~HelperCalls() = default;

  enum class Repeat {
    allowed, ///< doing it twice is the same as doing it once
    never,   ///< when the helper ends in the middle, whether it was done is unknown: the call fails
  };

  /// Carries out one of the helper's commands and yields its value. Throws DriverFailure for what the helper refuses,
  /// and DevToolsFailure for what goes wrong on the way.
  virtual boost::json::value perform(std::string_view command, const boost::json::object& parameters, Repeat repeat,
                                     const platform::CallLimits& limits) = 0;
};

/// The value in the helper's answer to a command with these parameters. Throws DriverFailure for a fault that it tells,
/// DevToolsFailure for a page that was closed or has crashed, and JSONMismatch for an answer in another shape.
[[nodiscard]] boost::json::value valueOfHelper(boost::json::value answer, const boost::json::object& parameters);

} // namespace tabwright::scripting
