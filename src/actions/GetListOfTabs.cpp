// Lists the tabs of all windows of a browser. One script brings them all; filters and selection work on that list here.
#include "actions/ActionList.h"
#include "actions/ListSelection.h"
#include "actions/ScriptAction.h"
#include "actions/SharedParameters.h"
#include "actions/enums/GetListOfTabsOptions.h"
#include "actions/enums/StringFilterOption.h"
#include "browserdata/BrowserTabData.h"
#include "browserdata/BrowserTabEntity.h"

namespace tabwright::actions {

using browserdata::BrowserTabData;
using browserdata::BrowserTabEntity;

class GetListOfTabs final : public ScriptAction<std::vector<BrowserTabData>, std::vector<BrowserTabEntity>> {
  using ListElements = GetListOfTabs_ListElementsOption;
  using TabPrivacy = GetListOfTabs_TabPrivacyOption;
  using Filter = StringFilterOption;

  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};
  Parameter<ListElements> listElements{*this, {.name = "listElements", .defaultValue = ListElements::all}};
  Parameter<TabPrivacy> tabPrivacy{*this, {.name = "tabPrivacy", .defaultValue = TabPrivacy::any}};
  Parameter<Filter> urlFilter{*this, {.name = "urlFilter", .defaultValue = Filter::ignore, .example = "contains"}};
  Parameter<std::string> pageURL{*this, {.name = "pageURL", .example = "example.com"}};
  Parameter<Filter> titleFilter{*this, {.name = "titleFilter", .defaultValue = Filter::ignore}};
  Parameter<std::string> pageTitle{*this, {.name = "pageTitle", .example = "News"}};

public:
  explicit GetListOfTabs(const ActionServices& services)
      : ScriptAction(services, "GetListOfTabs", intents::tables::browserTabs, {.readsOnly = true, .isOpen = false}) {
    aimAt(targetContext);
    declare({&pageURL, is(urlFilter, Filter::ignore), intents::Dependence::Counts::unlessItHolds});
    declare({&pageTitle, is(titleFilter, Filter::ignore), intents::Dependence::Counts::unlessItHolds});
    // A sentence for each combination of the two filters that count.
    summarise({
        {.when = {is(urlFilter, Filter::ignore), is(titleFilter, Filter::ignore)},
         .key = "urlFilter.ignore.titleFilter.ignore",
         .sentence = {&listElements, &targetContext},
         .further = {&tabPrivacy, &urlFilter, &titleFilter}},
        {.when = {is(urlFilter, Filter::ignore)},
         .key = "urlFilter.ignore.titleFilter.defaultCase",
         .sentence = {&listElements, &targetContext, &titleFilter, &pageTitle},
         .further = {&tabPrivacy, &urlFilter}},
        {.when = {is(titleFilter, Filter::ignore)},
         .key = "urlFilter.defaultCase.titleFilter.ignore",
         .sentence = {&listElements, &targetContext, &urlFilter, &pageURL},
         .further = {&tabPrivacy, &titleFilter}},
        {.key = "urlFilter.defaultCase.titleFilter.defaultCase",
         .sentence = {&listElements, &targetContext, &urlFilter, &pageURL, &titleFilter, &pageTitle},
         .further = {&tabPrivacy}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override { return "return success(my getListOfTabs())"; }

  [[nodiscard]] std::vector<BrowserTabEntity> result(std::vector<BrowserTabData> answer,
                                                     const engine::TargetContext& browser) const override {
    std::vector<BrowserTabEntity> tabs;
    for (const BrowserTabData& record : answer) {
      BrowserTabEntity tab(record, browser);
      if (passesFilters(tab))
        tabs.push_back(std::move(tab));
    }
    // Last, so that "first" is the first of those that pass.
    return selected(std::move(tabs), *listElements);
  }

  // An active filter without a text has the empty text to compare with.
  [[nodiscard]] bool passesFilters(const BrowserTabEntity& tab) const {
    return hasPrivacy(tab, *tabPrivacy) && passes(*urlFilter, tab.url, pageURL.value().value_or("")) &&
           passes(*titleFilter, tab.title, pageTitle.value().value_or(""));
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetListOfTabs>(const ActionServices&);

} // namespace tabwright::actions
