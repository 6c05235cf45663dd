#pragma once

#include "engine/JSONDecoding.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <optional>
#include <string>

namespace tabwright::browserdata {

/// One tab as a script reports it. JSON keys are the field names.
///
/// Only a detailed record has the page's content and selection. `tabID` is the browser's own reference and means
/// something to scripts only; "0" stands for a tab that has been closed.
struct BrowserTabData {
  std::optional<std::string> htmlContent; ///< the page's HTML
  bool isLoading = false;
  bool isPrivate = false;
  std::string pageSelectionText;
  std::string pageSelectionHTML;
  std::string tabID;
  std::string tabTitle;
  std::string tabURL;
  std::optional<std::string> textContent; ///< the page's text as shown

  friend bool operator==(const BrowserTabData&, const BrowserTabData&) = default;
};

/// The record as JSON, in the order of its fields. A field without value, or with its default, leaves no key.
[[nodiscard]] boost::json::object toJson(const BrowserTabData& tab);

} // namespace tabwright::browserdata

/// Id, title and URL are required, the rest may be missing or null. A wrong type is a mismatch everywhere; keys that
/// are no field are ignored.
template <>
struct tabwright::engine::JSONDecoding<tabwright::browserdata::BrowserTabData> {
  static tabwright::browserdata::BrowserTabData from(const boost::json::value& json);
};
