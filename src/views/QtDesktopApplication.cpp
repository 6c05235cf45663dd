#include "views/QtDesktopApplication.h"

#include "views/Text.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QUrl>
#include <utility>

namespace tabwright::views {

QtDesktopApplication::QtDesktopApplication() {
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [this] {
    if (delegate_ && !std::exchange(hasTerminated_, true))
      delegate_->applicationWillTerminate();
  });
}

QtDesktopApplication::~QtDesktopApplication() {
  qApp->disconnect(qApp);
}

void QtDesktopApplication::launch(Factories factories) {
  factories_ = std::move(factories);
  if (delegate_)
    delegate_->applicationDidFinishLaunching();
  main_ = factories_.mainWindow();
  main_->renewContent();
  main_->makeKeyAndOrderFront();
}

std::vector<shell::Window*> QtDesktopApplication::windows() const {
  std::vector<shell::Window*> open;
  for (QtWindow* window : {main_.get(), onboarding_.get()}) {
    // The main window can be shown again after it was closed, as long as the setup's keeps the process.
    if (window && (window == main_.get() || window->isVisible()))
      open.push_back(window);
  }
  return open;
}

shell::Window* QtDesktopApplication::keyWindow() const {
  const QWidget* active = QApplication::activeWindow();
  for (QtWindow* window : {main_.get(), onboarding_.get()}) {
    if (window && active == &window->frame())
      return window;
  }
  return nullptr;
}

shell::Window* QtDesktopApplication::makeOnboardingWindow() {
  onboarding_ = factories_.onboardingWindow();
  return onboarding_.get();
}

bool QtDesktopApplication::openAddress(const std::string& address) {
  const QUrl url(text(address), QUrl::StrictMode);
  // Desktops hand a scheme that nobody serves to the web browser, which only says that it doesn't know it.
  for (const auto* scheme : {"http", "https", "mailto", "file"}) {
    if (url.scheme() == QLatin1String(scheme))
      return QDesktopServices::openUrl(url);
  }
  return false;
}

void QtDesktopApplication::revealFile(const std::filesystem::path& file) {
  const QString url = QUrl::fromLocalFile(text(file.string())).toString(QUrl::FullyEncoded);
  // https://www.freedesktop.org/wiki/Specifications/file-manager-interface/
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  call.setArguments({QStringList{url}, QString()});
  QDBusConnection::sessionBus().send(call);
}

void QtDesktopApplication::terminate() {
  QCoreApplication::quit();
}

} // namespace tabwright::views
