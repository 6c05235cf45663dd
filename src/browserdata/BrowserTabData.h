#pragma once

#include "platform/JSONReader.h"

#include <boost/json/object.hpp>

#include <optional>
#include <string>

namespace tabwright::browserdata {

/// One tab as a script reports it. JSON keys are the field names.
///
/// Only a detailed record has the page's content and selection. `tabID` is the browser's own reference and means
/// something to scripts only; "0" stands for a tab that has been closed.
struct BrowserTabData {
  /// Of a detailed record; nothing, or an empty text, in others.
  std::optional<std::string> htmlContent; ///< the page's HTML
  /// At the time of the report; false too where the record doesn't say.
  bool isLoading = false;
  bool isPrivate = false;
  /// Empty where nothing is selected, and in records without details.
  std::string pageSelectionText;
  std::string pageSelectionHTML;
  std::string tabID;
  std::string tabTitle;
  /// As the script reports it; not checked.
  std::string tabURL;
  std::optional<std::string> textContent; ///< the page's text as shown

  /// Id, title and URL are required, the rest may be missing or null. Keys that are no field are ignored. Throws
  /// JSONMismatch.
  static BrowserTabData fromJSON(const platform::JSONReader& json);

  friend bool operator==(const BrowserTabData&, const BrowserTabData&) = default;
};

/// The record as JSON, in the order of its fields. A field without value, or with its default, leaves no key.
[[nodiscard]] boost::json::object toJson(const BrowserTabData& tab);

} // namespace tabwright::browserdata
