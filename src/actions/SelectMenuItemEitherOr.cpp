// Chooses the first of two menu items that is there and enabled: for items that change their titles, such as "Show …"
// and "Hide …".
#include "actions/ActionList.h"
#include "actions/MenuAction.h"
#include "actions/enums/ErrorHandlingSelection.h"
#include "actions/enums/PostActionDelay.h"

namespace tabwright::actions {

class SelectMenuItemEitherOr final : public MenuAction {
  using Selection = MenuItemBasicsSelection;

  Parameter<targets::ApplicationTarget> targetContext{*this, shared::targetApplication(services())};
  Parameter<Selection> menuItemBasicsSelection{*this, menuparameters::basicsSelection()};
  Parameter<std::string> title1{*this, menuparameters::title("title1", "Show Menubar")};
  Parameter<automation::StringFilterEnum> titleFilterSelection{*this, menuparameters::titleFilter()};
  Parameter<bool> isFilterCaseInsensitive{*this, menuparameters::caseInsensitive()};
  Parameter<std::string> path1{*this, menuparameters::path("path1", "View > Show Menubar")};
  MenuPathParameters segments1{*this, "path1MainMenuItem", "path1Segment"};
  Parameter<std::string> title2{*this, menuparameters::title("title2", "Hide Menubar")};
  Parameter<std::string> path2{*this, menuparameters::path("path2", "View > Hide Menubar")};
  MenuPathParameters segments2{*this, "path2MainMenuItem", "path2Segment"};
  Parameter<ErrorHandlingSelection> errorHandlingOption{
      *this, {.name = "errorHandlingOption", .defaultValue = ErrorHandlingSelection::raiseError}};
  Parameter<PostActionDelay> postActionDelay{*this, menuparameters::postActionDelay()};

public:
  explicit SelectMenuItemEitherOr(const ActionServices& services)
      : MenuAction(services, "SelectMenuItemEitherOr", intents::tables::browsers, {.destroys = true, .isOpen = false}) {
    registerRuns(Registration::insideRun);
    pauseAfterSuccess(postActionDelay);
    declareChoice(menuItemBasicsSelection, Selection::title, {&title1, &title2, &titleFilterSelection});
    declareChoice(menuItemBasicsSelection, Selection::path, {&path1, &path2});
    declareChoice(menuItemBasicsSelection, Selection::segmentedPath, segments1.all());
    declareChoice(menuItemBasicsSelection, Selection::segmentedPath, segments2.all());
    summarise({
        {.when = {is(menuItemBasicsSelection, Selection::path)},
         .key = "menuItemBasicsSelection.path",
         .sentence = {&path1, &path2, &targetContext},
         .further = {&menuItemBasicsSelection, &isFilterCaseInsensitive, &errorHandlingOption, &postActionDelay}},
        {.when = {is(menuItemBasicsSelection, Selection::segmentedPath)},
         .key = "menuItemBasicsSelection.segmentedPath",
         .sentence = {&segments1.main, &segments1.segment1, &segments2.main, &segments2.segment1, &targetContext},
         .further = {&menuItemBasicsSelection, &segments1.segment2, &segments1.segment3, &segments1.segment4,
                     &segments2.segment2, &segments2.segment3, &segments2.segment4, &isFilterCaseInsensitive,
                     &errorHandlingOption, &postActionDelay}},
        {.key = "defaultCase",
         .sentence = {&title1, &title2, &targetContext},
         .further = {&menuItemBasicsSelection, &titleFilterSelection, &isFilterCaseInsensitive, &errorHandlingOption,
                     &postActionDelay}},
    });
  }

  [[nodiscard]] intents::ValueType resultType() const override {
    return intents::ValueTraits<std::optional<automation::MenuItemEntity>>::type();
  }

private:
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    const engine::TargetContext aimed = co_await resolved(*targetContext);
    const targets::RunningApplication app = co_await activate(aimed, MissingTarget::onlyThrown);
    const MenuItemName name1{title1, path1, segments1};
    const MenuItemName name2{title2, path2, segments2};
    requireEither(name1);
    requireEither(name2);
    const automation::MenuItemResult item1 =
        co_await find(app, name1, *menuItemBasicsSelection, *titleFilterSelection, *isFilterCaseInsensitive);
    const automation::MenuItemResult item2 =
        co_await find(app, name2, *menuItemBasicsSelection, *titleFilterSelection, *isFilterCaseInsensitive);
    registerRun();
    const automation::MenuItemResult* const chosen = enabledOf(item1, item2);
    if (chosen) {
      co_await press(**chosen);
    } else if (*errorHandlingOption == ErrorHandlingSelection::raiseError) {
      // With one of them there, the failure is that it is disabled.
      if (!item1 && !item2)
        throw item1.error();
      throw platform::failure(engine::AxeError::menuItemInactive);
    }
    giveNotices(host);
    co_return Outcome{.value = chosen ? valueOf(**chosen) : boost::json::value(),
                      .success = chosen ? Outcome::Success::yes : Outcome::Success::no};
  }

  /// Unlike the other actions this one asks for the item of the menu bar, too.
  void requireEither(const MenuItemName& name) const {
    if (*menuItemBasicsSelection == Selection::segmentedPath)
      requireGivenText(name.segments.main);
    else
      requireName(name, *menuItemBasicsSelection);
  }

  static const automation::MenuItemResult* enabledOf(const automation::MenuItemResult& item1,
                                                     const automation::MenuItemResult& item2) {
    // The first wins where both could be chosen.
    for (const automation::MenuItemResult* item : {&item1, &item2}) {
      if (*item && (*item)->isEnabled())
        return item;
    }
    return nullptr;
  }
};

template std::unique_ptr<ActionFrame> makeAction<SelectMenuItemEitherOr>(const ActionServices&);

} // namespace tabwright::actions
