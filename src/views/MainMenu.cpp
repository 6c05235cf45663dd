#include "views/MainMenu.h"

#include "shell/MenuCommands.h"
#include "shell/RootViewTab.h"
#include "shell/Varn.h"
#include "views/Text.h"
#include "views/pages/Pages.h"

#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <functional>
#include <string>

namespace tabwright::views {
namespace {

using shell::MenuAction;
using shell::MenuPlacement;

/// Nothing for a command that this build has no address for.
std::function<void()> effectOf(const shell::MenuCommand& command, const Services& services) {
  switch (command.action) {
  case MenuAction::none:
    return {};
  case MenuAction::showMainWindow:
    return [&services] { shell::Varn::Windows::showMainWindow(services.application); };
  case MenuAction::checkForUpdates:
    return services.checkForUpdates;
  case MenuAction::openWebsite:
    if (services.endpoints.website.empty())
      return {};
    return [&services, address = std::string(services.endpoints.website).append(command.path)] {
      services.application.openAddress(shell::refLinkTarget(address));
    };
  case MenuAction::sendFeedback:
    if (!canSendFeedback(services))
      return {};
    return [&services] { sendFeedback(services); };
  }
  return {};
}

void addCommands(QMenu& menu, MenuPlacement placement, const Services& services) {
  int section = 0;
  for (const shell::MenuCommand& command : shell::menuCommands) {
    if (command.placement != placement)
      continue;
    std::function<void()> effect = effectOf(command, services);
    if (!effect)
      continue;
    if (section != 0 && section != command.section)
      menu.addSeparator();
    section = command.section;
    QObject::connect(menu.addAction(label(command.title)), &QAction::triggered, &menu, std::move(effect));
  }
}

} // namespace

void addMenus(QMainWindow& window, const Services& services) {
  constexpr std::string_view name = shell::Varn::App::name;
  // Each of these begins with a letter of its own, in English and in German: Alt and that letter opens it.
  const auto addMenu = [&window](const QString& title) { return window.menuBar()->addMenu(QLatin1Char('&') + title); };
  QMenu* application = addMenu(text(name));
  QObject::connect(application->addAction(label("menu.app.about", {name})), &QAction::triggered, &window, [&services] {
    shell::Varn::Windows::showMainWindow(services.application);
    services.main.appState().selectedView.set(shell::RootViewTab::about);
  });
  addCommands(*application, MenuPlacement::afterAppInfo, services);
  application->addSeparator();
  QAction* quit = application->addAction(label("menu.app.quit", {name}));
  quit->setShortcut(QKeySequence(QKeySequence::Quit));
  QObject::connect(quit, &QAction::triggered, &window, [&services] { services.application.terminate(); });

  QMenu* file = addMenu(label("menu.file"));
  QAction* close = file->addAction(label("menu.file.close"));
  close->setShortcut(QKeySequence(QKeySequence::Close));
  QObject::connect(close, &QAction::triggered, &window, &QWidget::close);

  addCommands(*addMenu(label("menu.window")), MenuPlacement::windowSize, services);
  QMenu* help = addMenu(label("menu.help"));
  addCommands(*help, MenuPlacement::help, services);
  if (help->isEmpty())
    QObject::connect(help->addAction(label("tab.docs")), &QAction::triggered, &window,
                     [&services] { services.main.appState().selectedView.set(shell::RootViewTab::docsLinks); });
}

} // namespace tabwright::views
