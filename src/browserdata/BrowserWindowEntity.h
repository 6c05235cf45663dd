#pragma once

#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowData.h"
#include "engine/TargetContext.h"
#include "intents/EntityDefinition.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// A window with its tabs as an action's result, and as the parameter of a later action, which looks at `fullID` and
/// `targetContext` only.
struct BrowserWindowEntity {
  engine::TargetContext targetContext;
  /// The browser's title of the window, or the name that an action gave to a window of Safari.
  std::string windowTitle;
  std::vector<BrowserTabEntity> tabs; ///< in the browser's order
  BrowserTabEntity activeTab;         ///< a value of its own, beside the one in `tabs`
  bool isPrivate = false;
  /// False for a minimized window.
  bool isVisible = false;
  std::string fullID; ///< context id, a colon, the browser's own reference: "com.apple.safari:17"

  BrowserWindowEntity() = default;
  /// The entity of a record from the browser `context`, which must have an id.
  BrowserWindowEntity(const BrowserWindowData& window, const engine::TargetContext& context);

  /// The window that a `fullID` alone refers to; its id may be the browser's short name, too: "chromium:8". Nothing for
  /// other texts.
  [[nodiscard]] static std::optional<BrowserWindowEntity> fromReference(std::string_view text);

  /// Throws `ValueError` for a `fullID` that can't be one: it goes into programs as it is.
  void check() const;

  /// The browser's own reference: `fullID` without the context id.
  [[nodiscard]] std::string id() const;
  /// "TITLE [BROWSER]".
  [[nodiscard]] std::string displayRepresentation() const;

  /// Its properties by name, as those of a tab.
  [[nodiscard]] static const intents::EntityDefinition<BrowserWindowEntity>& definition();

  friend bool operator==(const BrowserWindowEntity&, const BrowserWindowEntity&) = default;
};

} // namespace tabwright::browserdata
