#include "browserdata/BrowserWindowData.h"

#include <boost/json/array.hpp>

namespace tabwright::browserdata {

BrowserWindowData BrowserWindowData::fromJSON(const platform::JSONReader& json) {
  return {
      .isPrivate = json.find<bool>("isPrivate").value_or(false),
      .isVisible = json.find<bool>("isVisible").value_or(false),
      .activeTab = json.require<BrowserTabData>("activeTab"),
      .activeTabIndex = json.require<std::int64_t>("activeTabIndex"),
      .windowID = json.require<std::string>("windowID"),
      .windowIndex = json.require<std::int64_t>("windowIndex"),
      .windowTitle = json.require<std::string>("windowTitle"),
      .tabsList = json.require<std::vector<BrowserTabData>>("tabsList"),
  };
}

boost::json::object toJson(const BrowserWindowData& window) {
  boost::json::object object;
  if (window.isPrivate)
    object["isPrivate"] = true;
  if (window.isVisible)
    object["isVisible"] = true;
  object["activeTab"] = toJson(window.activeTab);
  object["activeTabIndex"] = window.activeTabIndex;
  object["windowID"] = window.windowID;
  object["windowIndex"] = window.windowIndex;
  object["windowTitle"] = window.windowTitle;
  boost::json::array& tabs = object["tabsList"].emplace_array();
  for (const BrowserTabData& tab : window.tabsList)
    tabs.push_back(toJson(tab));
  return object;
}

} // namespace tabwright::browserdata
