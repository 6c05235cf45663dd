// Finds a menu item and gives a reference to it, for later actions. The item is not pressed, but its application comes
// to the front.
#include "actions/ActionList.h"
#include "actions/MenuAction.h"
#include "actions/enums/ErrorHandlingSelection.h"

namespace tabwright::actions {

class GetMenuItemReference final : public MenuAction {
  using Selection = MenuItemBasicsSelection;

  Parameter<targets::ApplicationTarget> targetContext{*this, shared::targetApplication(services())};
  Parameter<Selection> menuItemBasicsSelection{*this, menuparameters::basicsSelection()};
  Parameter<std::string> title{*this, menuparameters::title("title", "Save As…")};
  Parameter<automation::StringFilterEnum> titleFilterSelection{*this, menuparameters::titleFilter()};
  Parameter<std::string> path{*this, menuparameters::path("path", "File > Save As…")};
  Parameter<bool> isFilterCaseInsensitive{*this, menuparameters::caseInsensitive()};
  MenuPathParameters segments{*this, "mainMenuItem", "pathSegment"};
  Parameter<ErrorHandlingSelection> errorHandlingOption{
      *this, {.name = "errorHandlingOption", .defaultValue = ErrorHandlingSelection::raiseError}};

public:
  explicit GetMenuItemReference(const ActionServices& services)
      : MenuAction(services, "GetMenuItemReference", intents::tables::browsers,
                   {.isIdempotent = true, .isOpen = false}) {
    registerRuns(Registration::insideRun);
    declareChoice(menuItemBasicsSelection, Selection::title, {&title, &titleFilterSelection});
    declareChoice(menuItemBasicsSelection, Selection::path, {&path});
    declareChoice(menuItemBasicsSelection, Selection::segmentedPath, segments.all());
    summarise({
        {.when = {is(menuItemBasicsSelection, Selection::path)},
         .key = "menuItemBasicsSelection.path",
         .sentence = {&path, &targetContext},
         .further = {&menuItemBasicsSelection, &isFilterCaseInsensitive, &errorHandlingOption}},
        {.when = {is(menuItemBasicsSelection, Selection::segmentedPath)},
         .key = "menuItemBasicsSelection.segmentedPath",
         .sentence = {&segments.main, &segments.segment1, &targetContext},
         .further = {&menuItemBasicsSelection, &segments.segment2, &segments.segment3, &segments.segment4,
                     &isFilterCaseInsensitive, &errorHandlingOption}},
        {.key = "menuItemBasicsSelection.defaultCase",
         .sentence = {&title, &targetContext},
         .further = {&menuItemBasicsSelection, &titleFilterSelection, &isFilterCaseInsensitive, &errorHandlingOption}},
    });
  }

  [[nodiscard]] intents::ValueType resultType() const override {
    return intents::ValueTraits<std::optional<automation::MenuItemEntity>>::type();
  }

private:
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    const targets::RunningApplication app = co_await activate(*targetContext);
    const MenuItemName name{title, path, segments};
    requireName(name, *menuItemBasicsSelection);
    const automation::MenuItemResult item =
        co_await find(app, name, *menuItemBasicsSelection, *titleFilterSelection, *isFilterCaseInsensitive);
    // Counted once the search is over, whatever it has found.
    registerRun();
    if (!item && *errorHandlingOption == ErrorHandlingSelection::raiseError)
      throw item.error();
    giveNotices(host);
    co_return Outcome{.value = item ? valueOf(*item) : boost::json::value()};
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetMenuItemReference>(const ActionServices&);

} // namespace tabwright::actions
