// Tells whether a menu item that was found earlier is there and enabled. Nothing is started or brought to the front,
// and nothing is an error: what can't be found out is no.
#include "actions/ActionList.h"
#include "actions/MenuAction.h"

namespace tabwright::actions {

class TestMenuItemForX final : public MenuAction {
  Parameter<automation::MenuItemEntity> menuItem{*this, menuparameters::menuItem(intents::Presence::required)};

public:
  explicit TestMenuItemForX(const ActionServices& services)
      : MenuAction(services, "TestMenuItemForX", intents::tables::browsers, {.readsOnly = true, .isOpen = false}) {
    registerRuns(Registration::beforePreconditions);
    summarise({{.sentence = {&menuItem}}});
  }

  [[nodiscard]] intents::ValueType resultType() const override { return intents::ValueTraits<bool>::type(); }

private:
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    const automation::MenuItemResult item = co_await find(*menuItem);
    const bool isEnabled = item && item->isEnabled();
    // The answer stays no; the user is told why it couldn't be found out.
    if (!item && item.error().cause())
      host.notice(*item.error().cause());
    giveNotices(host);
    co_return Outcome{.value = boost::json::value(isEnabled)};
  }
};

template std::unique_ptr<ActionFrame> makeAction<TestMenuItemForX>(const ActionServices&);

} // namespace tabwright::actions
