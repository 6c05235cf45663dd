#pragma once

#include "platform/DefaultsKey.h"

#include <QMetaObject>
#include <QWidget>
#include <functional>
#include <utility>

namespace tabwright::views {

/// Calls `changed` on the main thread whenever the setting has become another, whichever process changed it, as long as
/// the widget lives.
template <class T>
void follow(QWidget* widget, const platform::DefaultsKey<T>& key, std::function<void()> changed) {
  class Keeper final : public QObject {
  public:
    using QObject::QObject;
    platform::DefaultsObservation observation; // ends before the object that it posts to
  };
  auto* keeper = new Keeper(widget);
  keeper->observation = key.observe(
      [keeper, changed = std::move(changed)] { QMetaObject::invokeMethod(keeper, changed, Qt::QueuedConnection); });
}

} // namespace tabwright::views
