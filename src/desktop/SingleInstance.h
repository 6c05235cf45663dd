#pragma once

#include <QDBusVirtualObject>
#include <functional>

namespace tabwright::desktop {

/// The program's name on the session bus: who has it is the one process with windows, and others ask it to show them.
///
/// It answers as the Desktop Entry Specification says that D-Bus activation goes
/// (https://specifications.freedesktop.org/desktop-entry-spec/, org.freedesktop.Application). Without a session bus
/// each start is a process of its own.
class SingleInstance final : public QDBusVirtualObject {
public:
  /// Takes the name. `activate` is called on the main thread when another start asks.
  explicit SingleInstance(std::function<void()> activate);

  /// True where another process had the name; it has been asked to show its windows, and this one is to end.
  [[nodiscard]] bool isSecond() const { return isSecond_; }

  [[nodiscard]] QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
  std::function<void()> activate_;
  bool isSecond_ = false;
};

} // namespace tabwright::desktop
