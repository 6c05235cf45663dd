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

/// A tab as an action's result, and as the parameter of a later action.  It is a value, not a handle: what it says held
/// when the action ran. A later action finds the tab by `fullID` in the browser `targetContext`, and looks at nothing
/// else; so these two are all that an entity written by hand needs. Content and selection are missing or empty unless
/// the action asked for details.
struct BrowserTabEntity {
  engine::TargetContext targetContext;
  /// As the browser tells it; may be empty.
  std::string title;
  std::string url;
  /// The page's HTML as it is at the time, not as the server sent it.
  std::optional<std::string> htmlDocument;
  std::optional<std::string> textContent;
  /// The selection as plain text; empty where nothing is selected.
  std::optional<std::string> selectionText;
  /// A selection that can't be converted has a text here that says so.
  std::optional<std::string> selectionMD; ///< the selection as Markdown
  bool isLoading = false;
  /// True for a tab of an incognito or private window.
  bool isPrivate = false;
  std::string fullID; ///< context id, a colon, the browser's own reference: "com.google.chrome:8"
  /// Made from the selection's HTML; nothing where none is selected, or where it is too large to be read.
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

  /// Its properties by name, for JSON, parameters and tables. Made on first use, from any thread.
  [[nodiscard]] static const intents::EntityDefinition<BrowserTabEntity>& definition();

  friend bool operator==(const BrowserTabEntity&, const BrowserTabEntity&) = default;
};

} // namespace tabwright::browserdata
