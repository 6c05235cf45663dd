// The snapshot is taken by the first call that needs one, so an event that needs none, such as a program's poll for the
// result of its page job, makes no round trip. All objects of the event are positions in that one snapshot.
#include "scripting/browser/BrowserScope.h"

#include "scripting/model/Arguments.h"

#include <charconv>
#include <string>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::ObjectSpecifier;
using applescript::Value;

BrowserScope::BrowserScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
                           const applescript::AppleEventMessage& message, BrowserDriver& driver, SnapshotCache& cache,
                           const std::function<bool()>& isFrontmost)
    : EventScope(model, std::move(application), message), driver_(driver), cache_(cache), isFrontmost_(isFrontmost),
      limits_{message.deadline, message.stop, message.notices} {}

const IndexedSnapshot& BrowserScope::snapshot() {
  if (!snapshot_)
    snapshot_ = cache_.take(driver_, limits_);
  return *snapshot_;
}

const WindowState& BrowserScope::window(Object object) {
  return snapshot().windows().at(static_cast<std::size_t>(object.first));
}

const TabState& BrowserScope::tab(Object object) {
  return window(object).tabs.at(static_cast<std::size_t>(object.second));
}

std::optional<TabID> BrowserScope::tabLastSeen(const Value& subject, applescript::FourCharCode tabCode) const {
  const auto isElementByID = [](const ObjectSpecifier* specifier, applescript::FourCharCode code) {
    return specifier && specifier->form == ObjectSpecifier::Form::id && specifier->desiredClass == code &&
           !specifier->test;
  };
  // Ids alone name the same tab for ever. An index, a name or a test may mean another tab by each look.
  const auto* specifier = subject.get<Value::SpecifierPointer>();
  const ObjectSpecifier* tab = specifier ? specifier->get() : nullptr;
  const ObjectSpecifier* window = tab ? tab->container.get() : nullptr;
  if (!isElementByID(tab, tabCode) || !isElementByID(window, fourCharCode("cwin")) ||
      window->container->form != ObjectSpecifier::Form::application)
    return std::nullopt;
  const std::shared_ptr<const IndexedSnapshot> seen = cache_.last();
  const auto tabID = idNumber(tab->key);
  const auto windowID = idNumber(window->key);
  if (!seen || !tabID || !windowID)
    return std::nullopt;
  // Also a tab that has moved to another window is looked for anew.
  const auto place = seen->findTab(*tabID);
  return place && seen->findWindow(*windowID) == place->window ? tabID : std::nullopt;
}

applescript::SpecifierPointer BrowserScope::windowSpecifier(std::size_t position, Value id) {
  if (lastWindow_ != position) {
    lastSpecifier_ = applescript::elementByID(root(), fourCharCode("cwin"), std::move(id));
    lastWindow_ = position;
  }
  return lastSpecifier_;
}

std::optional<std::int64_t> idNumber(const Value& value) {
  if (const auto* integer = value.get<std::int64_t>())
    return *integer;
  const std::string* text = value.text();
  if (text == nullptr) {
    // A real is an id when it is a whole number that `idText` can say.
    if (value.is<double>() && idText(value))
      return requireInteger(value);
    return std::nullopt;
  }
  // Ids are compared as texts, so "08" and " 8" are not the id 8.
  const bool hasLeadingZero = text->size() > 1 && text->front() == '0';
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  if (hasLeadingZero || error != std::errc{} || end != text->data() + text->size())
    return std::nullopt;
  return number;
}

} // namespace tabwright::scripting
