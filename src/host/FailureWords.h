#pragma once

#include "platform/Failure.h"

#include <boost/json/object.hpp>

#include <string>

namespace tabwright::host {

/// A notice as data: `type`, `case`, `number` (null where there is none), `message`, and `line` where it has one.
[[nodiscard]] boost::json::object noticeJson(const platform::Notice& notice);

/// A failure as data: `type`, `case`, `number`, `message`, and `cause`, a notice, where something lies beneath it. One
/// form for the command line's --json, for workflows (`error`) and for agents ("_meta").
[[nodiscard]] boost::json::object failureJson(const platform::Failure& failure);

/// The line beneath a failure's sentence, without its line feed; empty for most. A cause that the
/// sentence tells already adds only its line.
[[nodiscard]] std::string causeLine(const platform::Failure& failure);

} // namespace tabwright::host
