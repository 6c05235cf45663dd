#pragma once

#include "platform/Failure.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::engine {

/// The failures of naming an element of a page by a reference, or by a role and a name. A selector that matches nothing
/// is none: actions say what that means to them.
enum class ElementError {
  unknown,    ///< a reference of another page, or of this one before it was loaded anew
  gone,       ///< the element has left the page
  changed,    ///< the element has another role or name than it was given the reference for
  ambiguous,  ///< several elements have that role and name
  notFound,   ///< none has
  unreadable, ///< the page kept its outline from being made
};

/// An element that a job was to act on and didn't: nothing in the page has changed. The sentence is in the user's
/// language; its parts come from the page.
class ElementFailure final : public platform::Failure {
public:
  /// `asked` is the text that was to name the element, `detail` what the case tells besides: the element's former role
  /// and name, the number of those that fit, the page's exception. `candidates` are the nearest, perhaps none.
  ElementFailure(ElementError kind, std::string asked, std::string detail, std::string candidates = {});

  /// The failure that a job's answer tells in the form that `resources/page/elementLookup.js` gives it; nothing for
  /// other answers.
  [[nodiscard]] static std::optional<ElementFailure> inAnswer(const std::vector<std::string>& answer);

  [[nodiscard]] std::string errorDescription() const override;
  [[nodiscard]] platform::FailureIdentity identity() const override;

private:
  ElementError kind_;
  std::string asked_;
  std::string detail_;
  std::string candidates_;
};

} // namespace tabwright::engine
