#include "automation/MenuSource.h"

#include "platform/DesktopFault.h"

#include <utility>

namespace tabwright::automation {

AxeElement MenuSource::bar() {
  AxeElement::Facts facts = barFacts();
  // Elements keep their source alive, so a found item can be pressed when its bar is gone.
  facts.source = shared_from_this();
  facts.role = axerole::menuBar;
  return AxeElement(std::make_shared<const AxeElement::Facts>(std::move(facts)));
}

std::optional<ChildLists> MenuSource::children(std::span<const AxeElement> level) {
  try {
    return readChildren(level);
  } catch (const platform::DesktopFailure& failure) {
    // The caller has given up; everything else leaves the search to go on with what it has.
    if (failure.kind() == platform::DesktopFault::stopped)
      throw;
    failure_ = platform::asCause(failure);
    return std::nullopt;
  }
}

} // namespace tabwright::automation
