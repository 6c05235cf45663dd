#include "browserdata/BrowserTabData.h"

namespace tabwright::browserdata {

BrowserTabData BrowserTabData::fromJSON(const platform::JSONReader& json) {
  return {
      .htmlContent = json.find<std::string>("htmlContent"),
      .isLoading = json.find<bool>("isLoading").value_or(false),
      .isPrivate = json.find<bool>("isPrivate").value_or(false),
      .pageSelectionText = json.find<std::string>("pageSelectionText").value_or(""),
      .pageSelectionHTML = json.find<std::string>("pageSelectionHTML").value_or(""),
      .tabID = json.require<std::string>("tabID"),
      .tabTitle = json.require<std::string>("tabTitle"),
      .tabURL = json.require<std::string>("tabURL"),
      .textContent = json.find<std::string>("textContent"),
  };
}

boost::json::object toJson(const BrowserTabData& tab) {
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

} // namespace tabwright::browserdata
