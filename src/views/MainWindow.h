#pragma once

#include "views/QtWindow.h"
#include "views/Services.h"

#include <memory>

namespace tabwright::views {

/// The main window: the four pages as tabs, "What's New" over them, and the menus. The services outlive it.
[[nodiscard]] std::unique_ptr<QtWindow> makeMainWindow(const Services& services);

/// The setup's window.
[[nodiscard]] std::unique_ptr<QtWindow> makeOnboardingWindow(const Services& services);

} // namespace tabwright::views
