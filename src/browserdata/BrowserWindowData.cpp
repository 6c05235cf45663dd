#include "browserdata/BrowserWindowData.h"

#include <boost/json/array.hpp>

namespace tabwright {

browserdata::BrowserWindowData
engine::JSONDecoding<browserdata::BrowserWindowData>::from(const boost::json::value& json) {
  using browserdata::BrowserTabData;
  const boost::json::object& object = requireObject(json);
  return {
      .isPrivate = fieldOr(object, "isPrivate", false),
      .isVisible = fieldOr(object, "isVisible", false),
      .activeTab = requiredField<BrowserTabData>(object, "activeTab"),
      .activeTabIndex = requiredField<std::int64_t>(object, "activeTabIndex"),
      .windowID = requiredField<std::string>(object, "windowID"),
      .windowIndex = requiredField<std::int64_t>(object, "windowIndex"),
      .windowTitle = requiredField<std::string>(object, "windowTitle"),
      .tabsList = requiredField<std::vector<BrowserTabData>>(object, "tabsList"),
  };
}

boost::json::object browserdata::toJson(const BrowserWindowData& window) {
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

} // namespace tabwright
