// Chooses a menu item, as a click on it would. A disabled one takes the click and does nothing, which isn't noticed.
#include "actions/ActionList.h"
#include "actions/MenuAction.h"
#include "actions/enums/MenuItemFullSelection.h"
#include "actions/enums/PostActionDelay.h"

namespace tabwright::actions {

class SelectMenuItem final : public MenuAction {
  using Selection = MenuItemFullSelection;

  Parameter<targets::ApplicationTarget> targetContext{*this, shared::targetApplication(services())};
  Parameter<Selection> selectionOption{*this, {.name = "selectionOption", .defaultValue = Selection::title}};
  Parameter<std::string> title{*this, menuparameters::title("title", "Save As…")};
  Parameter<automation::StringFilterEnum> titleFilterSelection{*this, menuparameters::titleFilter()};
  Parameter<bool> isFilterCaseInsensitive{*this, menuparameters::caseInsensitive()};
  Parameter<std::string> path{*this, menuparameters::path("path", "File > Save As…")};
  MenuPathParameters segments{*this, "mainMenuItem", "pathSegment"};
  Parameter<automation::MenuItemEntity> menuItem{*this, menuparameters::menuItem(intents::Presence::optional)};
  Parameter<PostActionDelay> postActionDelay{*this, menuparameters::postActionDelay()};

public:
  explicit SelectMenuItem(const ActionServices& services)
      : MenuAction(services, "SelectMenuItem", intents::tables::browsers, {.destroys = true, .isOpen = false}) {
    registerRuns(Registration::insideRun);
    pauseAfterSuccess(postActionDelay);
    declareChoice(selectionOption, Selection::title, {&title, &titleFilterSelection});
    declareChoice(selectionOption, Selection::path, {&path});
    declareChoice(selectionOption, Selection::segmentedPath, segments.all());
    declareChoice(selectionOption, Selection::reference, {&menuItem});
    summarise({
        {.when = {is(selectionOption, Selection::path)},
         .key = "selectionOption.path",
         .sentence = {&path, &targetContext},
         .further = {&selectionOption, &isFilterCaseInsensitive, &postActionDelay}},
        {.when = {is(selectionOption, Selection::segmentedPath)},
         .key = "selectionOption.segmentedPath",
         .sentence = {&segments.main, &segments.segment1, &targetContext},
         .further = {&selectionOption, &segments.segment2, &segments.segment3, &segments.segment4,
                     &isFilterCaseInsensitive, &postActionDelay}},
        {.when = {is(selectionOption, Selection::reference)},
         .key = "selectionOption.reference",
         .sentence = {&menuItem, &targetContext},
         .further = {&selectionOption, &postActionDelay}},
        {.key = "selectionOption.defaultCase",
         .sentence = {&title, &targetContext},
         .further = {&selectionOption, &titleFilterSelection, &isFilterCaseInsensitive, &postActionDelay}},
    });
  }

  [[nodiscard]] intents::ValueType resultType() const override {
    return intents::ValueTraits<automation::MenuItemEntity>::type();
  }

private:
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    // The frontmost entry means a browser here, as its lookup finds one.
    const engine::TargetContext aimed = co_await resolved(*targetContext);
    const targets::RunningApplication app = co_await activate(aimed);
    const automation::MenuItemResult item = co_await search(app);
    // Counted once the search is over, whatever it has found.
    registerRun();
    if (!item)
      throw item.error();
    co_await press(*item);
    giveNotices(host);
    co_return Outcome{.value = valueOf(*item)};
  }

  platform::Task<automation::MenuItemResult> search(const targets::RunningApplication& app) {
    if (*selectionOption == Selection::reference)
      return find(*menuItem);
    const auto selection = static_cast<MenuItemBasicsSelection>(*selectionOption); // the same cases in the same order
    const MenuItemName name{title, path, segments};
    requireName(name, selection);
    return find(app, name, selection, *titleFilterSelection, *isFilterCaseInsensitive);
  }
};

template std::unique_ptr<ActionFrame> makeAction<SelectMenuItem>(const ActionServices&);

} // namespace tabwright::actions
