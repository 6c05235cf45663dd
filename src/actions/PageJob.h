#pragma once

#include "actions/TabTarget.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::actions {

/// Times of page jobs in seconds, unless an action says otherwise: they give six polls.
inline constexpr double pageJobTimeout = 1.0;
inline constexpr double pageJobInterval = 0.2;

/// The script that runs `javascript` as a job in the chosen tab. The page functions of the library may be called; what
/// is returned arrives as a list of texts.
[[nodiscard]] std::string pageJob(const TabTarget& tab, std::string_view javascript, double timeout = pageJobTimeout);

/// A truth value as JavaScript writes it.
[[nodiscard]] inline std::string javascriptText(bool value) {
  return value ? "true" : "false";
}

/// What the one page function of a job returned, in its text form. Throws `JavascriptError::unableToParseJS` when the
/// page gave nothing.
[[nodiscard]] const std::string& answerOf(const std::vector<std::string>& list);

/// Whether the page function reported success: its text is "true", in any case. Throws as `answerOf` does.
[[nodiscard]] bool succeeded(const std::vector<std::string>& list);

} // namespace tabwright::actions
