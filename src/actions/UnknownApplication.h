#pragma once

#include "automation/DesktopServices.h"
#include "platform/Notices.h"

#include <string>

namespace tabwright::actions {

/// The words for a user about an id that no application has: the applications that may have been meant, or why none can
/// be seen.
[[nodiscard]] platform::Notice unknownApplication(const std::string& id, const automation::DesktopServices& desktop);

} // namespace tabwright::actions
