#include "desktop/SingleInstance.h"

#include "platform/Logger.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariantMap>
#include <utility>

namespace tabwright::desktop {
namespace {

const platform::Logger instanceLog("SingleInstance");

const QString busName = QStringLiteral("com.tabwright.tabwright");
const QString objectPath = QStringLiteral("/com/tabwright/tabwright");
const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
constexpr int patience = 3000; // milliseconds

} // namespace

SingleInstance::SingleInstance(std::function<void()> activate) : activate_(std::move(activate)) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    instanceLog.debug("There is no session bus: another start won't find this one");
    return;
  }
  // The object first: whoever sees the name may call at once.
  bus.registerVirtualObject(objectPath, this);
  if (bus.registerService(busName))
    return;
  QDBusMessage call =
      QDBusMessage::createMethodCall(busName, objectPath, applicationInterface, QStringLiteral("Activate"));
  call.setArguments({QVariantMap()});
  // One that answers nothing is stuck: better a second window than none.
  isSecond_ = bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

QString SingleInstance::introspect(const QString&) const {
  return QStringLiteral("<interface name=\"org.freedesktop.Application\">"
                        "<method name=\"Activate\"><arg type=\"a{sv}\" direction=\"in\"/></method>"
                        "<method name=\"Open\"><arg type=\"as\" direction=\"in\"/>"
                        "<arg type=\"a{sv}\" direction=\"in\"/></method>"
                        "<method name=\"ActivateAction\"><arg type=\"s\" direction=\"in\"/>"
                        "<arg type=\"av\" direction=\"in\"/><arg type=\"a{sv}\" direction=\"in\"/></method>"
                        "</interface>");
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.interface() != applicationInterface)
    return false;
  const QString method = message.member();
  if (method != QStringLiteral("Activate") && method != QStringLiteral("Open") &&
      method != QStringLiteral("ActivateAction"))
    return false;
  connection.send(message.createReply());
  activate_();
  return true;
}

} // namespace tabwright::desktop
