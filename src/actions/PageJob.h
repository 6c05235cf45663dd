#pragma once

#include "actions/ScriptAction.h"
#include "actions/TabTarget.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::actions {

/// Times of page jobs in seconds, unless an action says otherwise: they give six polls.
inline constexpr double pageJobTimeout = 1.0;
inline constexpr double pageJobInterval = 0.2;

/// The script that runs `javascript` as a job in the chosen tab. The page functions of the library may be called; what
/// is returned arrives as a list of texts.
/// `timeout` is in seconds; polls come each `pageJobInterval`. `javascript` is the body of a function, whose texts from
/// users are escaped already.
[[nodiscard]] std::string pageJob(const TabTarget& tab, std::string_view javascript, double timeout = pageJobTimeout);

/// A truth value as JavaScript writes it.
[[nodiscard]] inline std::string javascriptText(bool value) {
  return value ? "true" : "false";
}

/// The text form of the value that the one page function of a job returned. Throws `JavascriptError::unableToParseJS`
/// when the page gave nothing, and `ElementFailure` when the job couldn't tell which element was meant.
[[nodiscard]] const std::string& answerOf(const std::vector<std::string>& list);

/// True when the page function reported success: its text is "true", in any case. Throws as `answerOf` does.
[[nodiscard]] bool succeeded(const std::vector<std::string>& list);

/// An explanation of a page function that reported no success.
struct Reason {
  std::string_view caseName; ///< of the notice
  std::string clause;
};
/// For functions that look for an element by a selector.
[[nodiscard]] Reason noSuchElement(const std::string& selector);

/// Tells the user of a page function that came to nothing (`undone`, such as "Nothing was clicked"), though its action
/// has a value all the same: the reason, or the text of the page's exception.
[[nodiscard]] std::optional<platform::Notice> noticeOfNothing(const std::vector<std::string>& list,
                                                              std::string_view undone, const Reason& reason);
/// The same for an action whose value gives the reason: of an exception only.
[[nodiscard]] std::optional<platform::Notice> noticeOfException(const std::vector<std::string>& list,
                                                                std::string_view undone);

/// An action whose job does something and has nothing to say but that it ran.
class PageCommand : public ScriptAction<std::vector<std::string>, intents::Nothing> {
protected:
  using ScriptAction::ScriptAction;

  [[nodiscard]] intents::Nothing result(std::vector<std::string> answer,
                                        const engine::TargetContext& /*browser*/) const override {
    static_cast<void>(answerOf(answer));
    return {};
  }
};

/// An action whose job tells whether it succeeded.
class PageAttempt : public ScriptAction<std::vector<std::string>, bool> {
protected:
  using ScriptAction::ScriptAction;

  [[nodiscard]] bool result(std::vector<std::string> answer, const engine::TargetContext& /*browser*/) const override {
    return succeeded(answer);
  }
};

} // namespace tabwright::actions
