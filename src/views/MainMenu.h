#pragma once

#include "views/Services.h"

#include <QMainWindow>

namespace tabwright::views {

/// Fills the window's menu bar: the standard items of a program with one window, and those of `shell::menuCommands` at
/// their places.
void addMenus(QMainWindow& window, const Services& services);

} // namespace tabwright::views
