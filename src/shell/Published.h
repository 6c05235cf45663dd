#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tabwright::shell {

/// Ends an observation of a `Published` value when it goes. It may go during a call.
using PublishedObservation = std::shared_ptr<void>;

/// A value that notifies its observers before every write, also of an equal value, so that a view can get ready to
/// redraw.
///
///     Published<bool> isOpen(false);
///     const auto observation = isOpen.observe([](bool next) { … }); // isOpen.value() is the old value in there
///
/// On the main actor only. An observer must not write the value.
template <class T>
class Published {
public:
  explicit Published(T value) : value_(std::move(value)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  /// Valid until the next write.
  [[nodiscard]] const T& value() const noexcept { return value_; }

  /// Tells the observers first, then writes: they still see the value before.
  void set(T next) {
    const auto observers = observers_; // one may come or go during the calls
    for (const std::weak_ptr<Observer>& entry : observers) {
      if (const std::shared_ptr<Observer> observer = entry.lock())
        (*observer)(next);
    }
    value_ = std::move(next);
  }

  /// `willChange` gets the value that is about to be written.
  [[nodiscard]] PublishedObservation observe(std::function<void(const T&)> willChange) {
    std::erase_if(observers_, [](const std::weak_ptr<Observer>& entry) { return entry.expired(); });
    auto observer = std::make_shared<Observer>(std::move(willChange));
    observers_.push_back(observer);
    return observer;
  }

private:
  using Observer = std::function<void(const T&)>;

  T value_;
  std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace tabwright::shell
