// Places are kept in a file of this program's state, apart from the settings, which other processes share.
#include "views/QtWindow.h"

#include "platform/linux/BaseDirectories.h"
#include "views/Text.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <utility>

namespace tabwright::views {
namespace {

QString placesFile() {
  return text((platform::stateHome() / "tabwright" / "windows.ini").string());
}

} // namespace

QtWindow::QtWindow(std::string_view identifier, std::unique_ptr<QWidget> frame,
                   std::function<void(QWidget& frame)> makeContent)
    : identifier_(identifier), frame_(std::move(frame)), makeContent_(std::move(makeContent)) {
  frame_->setObjectName(text(identifier));
  restorePlace();
}

QtWindow::~QtWindow() {
  keepPlace();
}

void QtWindow::close() {
  keepPlace();
  frame_->close();
}

bool QtWindow::isVisible() const {
  return frame_->isVisible();
}

void QtWindow::setTitle(const std::string& title) {
  frame_->setWindowTitle(text(title));
}

void QtWindow::renewContent() {
  makeContent_(*frame_);
}

void QtWindow::center() {
  const QScreen* screen = frame_->screen();
  if (!hasPlace_ && screen)
    frame_->move(screen->availableGeometry().center() - frame_->rect().center());
}

void QtWindow::makeKeyAndOrderFront() {
  frame_->setWindowState(frame_->windowState() & ~Qt::WindowMinimized);
  frame_->show();
  frame_->raise();
  frame_->activateWindow();
}

void QtWindow::restorePlace() {
  const QByteArray place = QSettings(placesFile(), QSettings::IniFormat).value(frame_->objectName()).toByteArray();
  hasPlace_ = frame_->restoreGeometry(place);
}

void QtWindow::keepPlace() const {
  if (frame_->isVisible())
    QSettings(placesFile(), QSettings::IniFormat).setValue(frame_->objectName(), frame_->saveGeometry());
}

} // namespace tabwright::views
