#pragma once

#include "platform/AccessibleElement.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::automation {

class MenuSource;

/// The attributes that elements are asked for. The Mac's accessibility interface calls them "AXChildren" and so on.
enum class AxeAttribute {
  children, ///< list of elements
  enabled,  ///< boolean
  parent,   ///< element
  role,     ///< text, one of `axerole`
  title,    ///< text
};

/// The roles of elements, as the Mac's accessibility interface names them.
namespace axerole {
inline constexpr std::string_view menuBar = "AXMenuBar";
inline constexpr std::string_view menuBarItem = "AXMenuBarItem";
inline constexpr std::string_view menu = "AXMenu";
inline constexpr std::string_view menuItem = "AXMenuItem";
} // namespace axerole

/// The status of a read that gave no value, by the Mac's numbers.
struct AXError {
  static constexpr std::int32_t wrongType = 0;           ///< the read succeeded, and its value is of another type
  static constexpr std::int32_t cannotComplete = -25204; ///< the application didn't answer
  static constexpr std::int32_t noValue = -25212;        ///< the element has no such attribute, or is gone

  std::int32_t status = wrongType;

  friend bool operator==(const AXError&, const AXError&) = default;
};

/// One element of an application's menus, in the vocabulary of the Mac's accessibility interface: bars hold items, an
/// item with a submenu holds exactly one menu, and that holds items again.
///
/// A value of its own, cheap to copy. It tells title, role and enabled state as they were when it was read; its
/// children are read from the application each time they are asked for.
///
///     for (const AxeElement& item : bar.children())
///       if (item.title() == "File" && item.isSubMenu()) ...
class AxeElement {
public:
  /// The answers about an element, as its source has read and translated them.
  struct Facts {
    std::shared_ptr<MenuSource> source;
    std::shared_ptr<const Facts> parent; ///< the node above in this tree; null for the bar
    std::string_view role;
    std::optional<std::string> title;    ///< nothing: it can't be read
    std::optional<bool> isEnabled;       ///< by itself, whatever the menus above it are; nothing: as above
    std::size_t position = 0;            ///< among its siblings, from 0
    platform::AccessibleElement element; ///< stands for it; the same for an item and the menu that was made for it
    std::vector<platform::AccessibleElement> below; ///< the application's own elements under it
    bool opensMenu = false;                         ///< of an item: it has a submenu, readable or not
    bool mayHoldMenu = false;                       ///< of an item: the only element below may be its menu itself
  };

  using Value = std::variant<std::string, bool, AxeElement, std::vector<AxeElement>>;

  /// Made by sources of menus. The facts are shared by all copies and by the elements below.
  explicit AxeElement(std::shared_ptr<const Facts> facts) : facts_(std::move(facts)) {}

  /// An attribute's value, of whatever type it has. Throws DesktopFailure `stopped` only, as all reads do.
  [[nodiscard]] std::expected<Value, AXError> value(AxeAttribute attribute) const;

  /// An attribute's value of that type.
  template <class T>
  [[nodiscard]] std::expected<T, AXError> read(AxeAttribute attribute) const {
    auto any = value(attribute);
    if (!any)
      return std::unexpected(any.error());
    if (T* typed = std::get_if<T>(&*any))
      return std::move(*typed);
    return std::unexpected(AXError{AXError::wrongType});
  }

  // Reads that take a failure as an ordinary answer: an empty text or list, nothing, not enabled.
  /// As it was when the element was read; empty where it couldn't be.
  [[nodiscard]] std::string title() const;
  /// One of `axerole`.
  [[nodiscard]] std::string role() const;
  /// Asks the application, which may take as long as the source's limits allow.
  [[nodiscard]] std::vector<AxeElement> children() const;
  /// The element above in this tree; nothing for the bar.
  [[nodiscard]] std::optional<AxeElement> parent() const;
  /// Enabled itself, and so are all items that its menu is opened from.
  [[nodiscard]] bool isEnabled() const;

  /// True for menus and for the items of bars and menus.
  [[nodiscard]] bool isMenu() const;
  /// True for items: those that may have a submenu.
  [[nodiscard]] bool isItem() const;
  /// Of a bar or a menu its items; of an item those of the menu that it opens, or none.
  [[nodiscard]] std::vector<AxeElement> items() const;
  /// True for items with a submenu, which is then their only child.
  [[nodiscard]] bool isSubMenu() const;

  /// For sources and searches, which work with the application's own elements.
  [[nodiscard]] const Facts& facts() const { return *facts_; }
  [[nodiscard]] const std::shared_ptr<const Facts>& sharedFacts() const { return facts_; }

private:
  std::shared_ptr<const Facts> facts_;
};

} // namespace tabwright::automation
