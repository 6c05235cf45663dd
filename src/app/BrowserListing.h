#pragma once

#include "host/Catalogue.h"
#include "host/Perform.h"
#include "intents/ActionHost.h"
#include "platform/Task.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace tabwright::app {

/// The tabs or windows of a browser as its actions list them: what may be chosen where one is asked for. `browser` is
/// written as on a command line; the frontmost one when it is empty. Nothing for a type that can't be listed. Throws
/// what the action throws. `catalogue` and `host` outlive it.
platform::Task<std::optional<host::ActionResult>> listing(const host::Catalogue& catalogue, intents::ValueType type,
                                                          std::string browser, intents::ActionHost& host);

/// The place of a tab among the windows, which the tab itself doesn't say.
struct TabPlace {
  std::size_t window = 1; ///< 1 is in front
  bool isActive = false;  ///< it is the one that its window shows
};
/// By `fullID`. A tab that isn't in it has no place that could be told.
using TabPlaces = std::map<std::string, TabPlace, std::less<>>;

/// The places of the tabs in a list of them, all of one browser, by one more run of an action. Empty for other results,
/// for an empty list, and where they can't be told; it never fails. `catalogue` and `host` outlive it, and so does
/// `tabs`.
platform::Task<TabPlaces> placesOf(const host::Catalogue& catalogue, const host::ActionResult& tabs,
                                   intents::ActionHost& host);

/// The reference of a tab or window as people write it, with the browser's short name: "chromium:8" for
/// "org.chromium.chromium:8". A text that begins with no known browser stays as it is.
[[nodiscard]] std::string shortReference(std::string_view fullID);

} // namespace tabwright::app
