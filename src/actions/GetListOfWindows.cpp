// Lists the windows of a browser. One script brings them all; names of Safari's windows, filters and selection are
// applied to that list here, in this order.
#include "actions/ActionList.h"
#include "actions/IsSafari.h"
#include "actions/ListSelection.h"
#include "actions/ScriptAction.h"
#include "actions/SharedParameters.h"
#include "actions/WindowNames.h"
#include "actions/enums/GetListOfWindowsOptions.h"
#include "actions/enums/StringFilterOption.h"
#include "browserdata/BrowserWindowData.h"
#include "browserdata/BrowserWindowEntity.h"

#include <map>
#include <set>

namespace tabwright::actions {

using browserdata::BrowserWindowData;
using browserdata::BrowserWindowEntity;

class GetListOfWindows final : public ScriptAction<std::vector<BrowserWindowData>, std::vector<BrowserWindowEntity>> {
  using ListElements = GetListOfWindows_ListElementsOption;
  using PrivacyFilter = GetListOfWindows_PrivacyFilterOption;
  using VisibilityFilter = GetListOfWindows_VisibilityFilterOption;
  using TitleFilter = StringFilterOption;

  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};
  Parameter<ListElements> listElements{*this, {.name = "listElements", .defaultValue = ListElements::all}};
  Parameter<PrivacyFilter> privacyFilter{*this, {.name = "privacyFilter", .defaultValue = PrivacyFilter::any}};
  Parameter<TitleFilter> titleFilter{
      *this, {.name = "titleFilter", .defaultValue = TitleFilter::ignore, .example = "contains"}};
  Parameter<std::string> title{*this, {.name = "title", .example = "News"}};
  Parameter<VisibilityFilter> visibilityFilter{*this,
                                               {.name = "visibilityFilter", .defaultValue = VisibilityFilter::any}};

public:
  explicit GetListOfWindows(const ActionServices& services)
      : ScriptAction(services, "GetListOfWindows", intents::tables::browserWindows,
                     {.readsOnly = true, .isOpen = false}) {
    aimAt(targetContext);
    declare({&title, is(titleFilter, TitleFilter::ignore), intents::Dependence::Counts::unlessItHolds});
    summarise({
        {.when = {is(titleFilter, TitleFilter::ignore)},
         .key = "titleFilter.ignore",
         .sentence = {&listElements, &targetContext},
         .further = {&privacyFilter, &titleFilter, &visibilityFilter}},
        {.key = "titleFilter.defaultCase",
         .sentence = {&listElements, &targetContext, &titleFilter, &title},
         .further = {&privacyFilter, &visibilityFilter}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override { return "return success(my getListOfWindows())"; }

  [[nodiscard]] std::vector<BrowserWindowEntity> result(std::vector<BrowserWindowData> answer,
                                                        const engine::TargetContext& browser) const override {
    std::vector<BrowserWindowEntity> windows;
    windows.reserve(answer.size());
    for (const BrowserWindowData& record : answer)
      windows.emplace_back(record, browser);
    // Before the filters, since titles are filtered as users know them.
    if (isSafari(*targetContext) && services().windowNames)
      applyNames(windows, *services().windowNames);
    std::erase_if(windows, [this](const BrowserWindowEntity& window) { return !passesFilters(window); });
    // Last, so that "first" is the first of those that pass.
    return selected(std::move(windows), *listElements);
  }

  static void applyNames(std::vector<BrowserWindowEntity>& windows, WindowNames& windowNames) {
    const std::map<std::string, std::string> names = windowNames.names();
    std::set<std::string> fullIDs;
    for (BrowserWindowEntity& window : windows) {
      fullIDs.insert(window.fullID);
      if (const auto name = names.find(window.fullID); name != names.end())
        window.windowTitle = name->second;
    }
    // The list is whole, so a name without a window here has lost its window for good.
    windowNames.prune(fullIDs);
  }

  // An active filter without a text has the empty text to compare with.
  [[nodiscard]] bool passesFilters(const BrowserWindowEntity& window) const {
    return hasPrivacy(window, *privacyFilter) && hasVisibility(window) &&
           passes(*titleFilter, window.windowTitle, title.value().value_or(""));
  }

  [[nodiscard]] bool hasVisibility(const BrowserWindowEntity& window) const {
    switch (*visibilityFilter) {
    case VisibilityFilter::any:
      return true;
    case VisibilityFilter::visible:
      return window.isVisible;
    case VisibilityFilter::hidden:
      return !window.isVisible;
    }
    return false;
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetListOfWindows>(const ActionServices&);

} // namespace tabwright::actions
