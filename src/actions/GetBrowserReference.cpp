// Gives a browser as a value for later actions. Only the frontmost one has to be looked for, by the lookup's script; a
// browser that is named needn't even run.
#include "actions/ActionList.h"
#include "actions/SharedParameters.h"

namespace tabwright::actions {

class GetBrowserReference final : public ActionFrame {
  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};

public:
  explicit GetBrowserReference(const ActionServices& services)
      : ActionFrame(services, "GetBrowserReference", intents::tables::browsers, {.readsOnly = true, .isOpen = false}) {
    aimAt(targetContext);
    summarise({{.sentence = {&targetContext}}});
  }

  [[nodiscard]] intents::ValueType resultType() const override {
    return intents::ValueTraits<engine::TargetContext>::type();
  }

private:
  platform::Task<Outcome> run(intents::ActionHost& /*host*/) override {
    const engine::TargetContext browser = co_await resolved(target());
    co_return Outcome{.value = intents::ValueTraits<engine::TargetContext>::toJson(browser)};
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetBrowserReference>(const ActionServices&);

} // namespace tabwright::actions
