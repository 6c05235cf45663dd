#pragma once

#include "views/Services.h"

#include <QWidget>

namespace tabwright::views {

// The pages of the main window, one to a tab.

[[nodiscard]] QWidget* makeHomePage(const Services& services);
[[nodiscard]] QWidget* makeSettingsPage();
[[nodiscard]] QWidget* makeDocsPage(const Services& services);
[[nodiscard]] QWidget* makeAboutPage(const Services& services);

/// "What's New", over the window of `parent`. It deletes itself when it is closed.
void showWhatsNew(QWidget& parent, const Services& services);

/// A document of the program, by the name of its file, in a window of its own over that of `parent`.
void showDocument(QWidget& parent, const std::string& title, const std::string& file);

/// Opens a mail to the makers, where the build names their address.
void sendFeedback(const Services& services);
/// True where it does.
[[nodiscard]] bool canSendFeedback(const Services& services);

} // namespace tabwright::views
