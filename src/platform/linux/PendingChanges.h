#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/PropertyListDocument.h"

#include <cstddef>
#include <deque>

namespace tabwright::platform {

/// The outcome of applying changes to a document.
struct AppliedChanges {
  bool isChanged = false;
  bool replacesOtherType = false; ///< a value gave way to one of another type
};

/// Applies one change to a document. What the change throws against its contract is logged. Values that it had set
/// before it threw stay set.
AppliedChanges applyChange(const DefaultsUpdate& change, PropertyListDocument& document);

/// The changes that aren't on the disk yet, in their order. Not safe for use from several threads at once.
///
///     pending.add(change);
///     const std::size_t end = pending.end();
///     pending.applyTo(document);
///     write(document);
///     pending.removeUpTo(end);    // changes that came meanwhile stay
class PendingChanges {
public:
  /// A store that can't be written must not grow without bound.
  static constexpr std::size_t limit = 1000;

  /// Adds one; false when the oldest had to be given up for it.
  bool add(DefaultsUpdate change);
  /// Forgets the oldest up to the one numbered `end`, which are on the disk now. Those that were given up meanwhile
  /// count as forgotten.
  void removeUpTo(std::size_t end);

  /// The number behind the last one. Numbers count all that were ever added.
  [[nodiscard]] std::size_t end() const noexcept { return begin_ + changes_.size(); }
  [[nodiscard]] bool isEmpty() const noexcept { return changes_.empty(); }

  /// Applies all, in their order. They stay pending. Later ones see what earlier ones have set.
  AppliedChanges applyTo(PropertyListDocument& document) const;

private:
  std::deque<DefaultsUpdate> changes_;
  std::size_t begin_ = 0;
};

} // namespace tabwright::platform
