#include "browserdata/BrowserTabData.h"

#include <string_view>

namespace tabwright {

namespace {

std::optional<std::string> optionalText(const boost::json::object& object, std::string_view key) {
  const boost::json::value* field = object.if_contains(key);
  if (!field || field->is_null())
    return std::nullopt;
  return engine::requiredField<std::string>(object, key);
}

} // namespace

browserdata::BrowserTabData engine::JSONDecoding<browserdata::BrowserTabData>::from(const boost::json::value& json) {
  const boost::json::object& object = requireObject(json);
  return {
      .htmlContent = optionalText(object, "htmlContent"),
      .isLoading = fieldOr(object, "isLoading", false),
      .isPrivate = fieldOr(object, "isPrivate", false),
      .pageSelectionText = fieldOr<std::string>(object, "pageSelectionText", {}),
      .pageSelectionHTML = fieldOr<std::string>(object, "pageSelectionHTML", {}),
      .tabID = requiredField<std::string>(object, "tabID"),
      .tabTitle = requiredField<std::string>(object, "tabTitle"),
      .tabURL = requiredField<std::string>(object, "tabURL"),
      .textContent = optionalText(object, "textContent"),
  };
}

boost::json::object browserdata::toJson(const BrowserTabData& tab) {
  boost::json::object object;
  if (tab.htmlContent)
    object["htmlContent"] = *tab.htmlContent;
  if (tab.isLoading)
    object["isLoading"] = true;
  if (tab.isPrivate)
    object["isPrivate"] = true;
  if (!tab.pageSelectionText.empty())
    object["pageSelectionText"] = tab.pageSelectionText;
  if (!tab.pageSelectionHTML.empty())
    object["pageSelectionHTML"] = tab.pageSelectionHTML;
  object["tabID"] = tab.tabID;
  object["tabTitle"] = tab.tabTitle;
  object["tabURL"] = tab.tabURL;
  if (tab.textContent)
    object["textContent"] = *tab.textContent;
  return object;
}

} // namespace tabwright
