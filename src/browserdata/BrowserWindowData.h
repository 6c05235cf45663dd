#pragma once

#include "browserdata/BrowserTabData.h"
#include "platform/JSONReader.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace tabwright::browserdata {

/// One window with all its tabs as a script reports it. JSON keys are the field names.
struct BrowserWindowData {
  bool isPrivate = false;
  bool isVisible = false;
  /// A record of its own, beside the one in `tabsList`.
  BrowserTabData activeTab;
  /// Scripts count from 1, as AppleScript does.
  std::int64_t activeTabIndex = 0; ///< 1-based, of `activeTab` in the window
  std::string windowID;            ///< the browser's own reference
  std::int64_t windowIndex = 0;    ///< 1 is frontmost
  /// As the browser tells it.
  std::string windowTitle;
  std::vector<BrowserTabData> tabsList; ///< in the browser's order

  /// All fields but the two booleans are required. Keys that are no field, such as the scripts' `activeTabID`, are
  /// ignored. Throws JSONMismatch.
  static BrowserWindowData fromJSON(const platform::JSONReader& json);

  friend bool operator==(const BrowserWindowData&, const BrowserWindowData&) = default;
};

/// The record as JSON, in the order of its fields. A field with its default leaves no key.
[[nodiscard]] boost::json::object toJson(const BrowserWindowData& window);

} // namespace tabwright::browserdata
