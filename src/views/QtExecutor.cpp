#include "views/QtExecutor.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace tabwright::views {

void queueOnMainThread(std::function<void()> work) {
  if (QCoreApplication* application = QCoreApplication::instance())
    QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

} // namespace tabwright::views
