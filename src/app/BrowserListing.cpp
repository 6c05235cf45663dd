// Tabs and windows are listed by the actions that users run, so that a question, a completion and a table offer exactly
// what the next command takes. A tab doesn't know its window: that comes from the list of windows, which is asked for
// as well, and is no reason for a list of tabs to fail.
#include "app/BrowserListing.h"

#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "platform/Failure.h"
#include "targets/SupportedBrowsers.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <string_view>
#include <utility>

namespace tabwright::app {
namespace {

using browserdata::BrowserTabEntity;
using browserdata::BrowserWindowEntity;

bool isTab(const intents::ValueType& type) {
  return type.entity == &BrowserTabEntity::definition().declaration();
}

bool isWindow(const intents::ValueType& type) {
  return type.entity == &BrowserWindowEntity::definition().declaration();
}

} // namespace

platform::Task<std::optional<host::ActionResult>> listing(const host::Catalogue& catalogue, intents::ValueType type,
                                                          std::string browser, intents::ActionHost& host) {
  if (!isTab(type) && !isWindow(type))
    co_return std::nullopt;
  host::ParameterTexts parameters;
  if (!browser.empty())
    parameters.emplace_back("targetContext", std::move(browser));
  co_return co_await host::perform(catalogue, isTab(type) ? "GetListOfTabs" : "GetListOfWindows", std::move(parameters),
                                   host);
}

platform::Task<TabPlaces> placesOf(const host::Catalogue& catalogue, const host::ActionResult& tabs,
                                   intents::ActionHost& host) {
  TabPlaces places;
  const boost::json::array* list = tabs.value.if_array();
  if (!isTab(tabs.type) || !list || list->empty())
    co_return places;
  try {
    const auto first = intents::ValueTraits<BrowserTabEntity>::fromJson(list->front());
    // Of the browser that the tabs are of: another one may be in front by then.
    const std::optional<host::ActionResult> windows =
        co_await listing(catalogue, intents::ValueTraits<BrowserWindowEntity>::type(), first.targetContext.id, host);
    const auto read = intents::ValueTraits<std::vector<BrowserWindowEntity>>::fromJson(windows->value);
    for (std::size_t index = 0; index < read.size(); ++index) {
      for (const BrowserTabEntity& tab : read[index].tabs)
        places[tab.fullID] = {.window = index + 1, .isActive = tab.fullID == read[index].activeTab.fullID};
    }
  } catch (const platform::Failure&) { // the browser has gone meanwhile: the list stands without them
    places.clear();
  }
  co_return places;
}

std::string shortReference(std::string_view fullID) {
  const std::size_t colon = fullID.find(':');
  const auto browser = targets::findTargetContext(fullID.substr(0, colon));
  // Another text than a reference of ours is shown as it came.
  if (colon == std::string_view::npos || !browser)
    return std::string(fullID);
  return std::string(targets::shortNameOf(*browser)).append(fullID.substr(colon));
}

} // namespace tabwright::app
