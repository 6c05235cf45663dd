#pragma once

#include "browserdata/BrowserTabData.h"
#include "engine/TargetContext.h"
#include "intents/EntityDefinition.h"
#include "intents/IntentFile.h"
#include "targets/TargetContextValue.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// A tab as an action's result, and as the parameter of a later action.
///
/// It is a value, not a handle: what it says held when the action ran. A later action finds the tab by `fullID` in the
/// browser `targetContext`, and looks at nothing else; so these two are all that an entity written by hand needs.
/// Content and selection have values only when the action asked for details.
struct BrowserTabEntity {
  engine::TargetContext targetContext;
  std::string title;
  std::string url;
  std::optional<std::string> htmlDocument;
  std::optional<std::string> textContent;
  std::optional<std::string> selectionText;
  std::optional<std::string> selectionMD; ///< the selection as Markdown
  bool isLoading = false;
  bool isPrivate = false;
  std::string fullID; ///< context id, a colon, the browser's own reference: "com.google.chrome:8"
  std::optional<intents::IntentFile> selectionRTFD; ///< the selection as rich text

  BrowserTabEntity() = default;
  /// The entity of a record from the browser `context`, which must have an id.
  BrowserTabEntity(const BrowserTabData& tab, const engine::TargetContext& context);

  /// The tab that a `fullID` alone refers to; its id may be the browser's short name, too: "chromium:8". Nothing for
  /// other texts.
  [[nodiscard]] static std::optional<BrowserTabEntity> fromReference(std::string_view text);

  /// Throws `ValueError` for a `fullID` that can't be one: it goes into programs as it is.
  void check() const;

  /// The browser's own reference: `fullID` without the context id.
  [[nodiscard]] std::string id() const;
  /// "TITLE [BROWSER]".
  [[nodiscard]] std::string displayRepresentation() const;

  [[nodiscard]] static const intents::EntityDefinition<BrowserTabEntity>& definition();

  friend bool operator==(const BrowserTabEntity&, const BrowserTabEntity&) = default;
};

} // namespace tabwright::browserdata
