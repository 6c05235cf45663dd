// Presses one key, chosen by its name. No program runs, but for the lookup of the frontmost browser.
#include "actions/ActionList.h"
#include "actions/DesktopAction.h"
#include "actions/KeyboardParameters.h"
#include "actions/UnknownApplication.h"
#include "actions/enums/PostActionDelay.h"
#include "automation/NamedKey.h"
#include "platform/DesktopFault.h"

namespace tabwright::actions {

class SimulateNamedKeyPress final : public DesktopAction {
  Parameter<targets::ApplicationTarget> targetContext{*this, shared::targetApplication(services())};
  Parameter<automation::NamedKey> namedKey{
      *this, {.name = "namedKey", .options = &automation::namedKeyProvider(), .example = "Page Down"}};
  Parameter<KeyboardModifiersStatus> modifiersStatus{*this, keyboardparameters::modifiersStatus()};
  Parameter<bool> modCmd{*this, keyboardparameters::modifier("modCmd")};
  Parameter<bool> modCtrl{*this, keyboardparameters::modifier("modCtrl")};
  Parameter<bool> modFn{*this, keyboardparameters::functionModifier()};
  Parameter<bool> modOpt{*this, keyboardparameters::modifier("modOpt")};
  Parameter<bool> modShift{*this, keyboardparameters::modifier("modShift")};
  Parameter<PostActionDelay> delayAfterKeystroke{
      *this, {.name = "delayAfterKeystroke", .defaultValue = PostActionDelay::none}};

public:
  explicit SimulateNamedKeyPress(const ActionServices& services)
      : DesktopAction(services, "SimulateNamedKeyPress", intents::tables::browsers, {.destroys = true}) {
    registerRuns(Registration::beforePreconditions);
    pauseAfterSuccess(delayAfterKeystroke);
    summarise({
        {.when = {is(modifiersStatus, KeyboardModifiersStatus::enabled)},
         .key = "modifiersStatus.enabled",
         .sentence = {&namedKey, &targetContext, &modCmd, &modCtrl, &modFn, &modOpt, &modShift},
         .further = {&modifiersStatus, &delayAfterKeystroke}},
        {.key = "modifiersStatus.defaultCase",
         .sentence = {&namedKey, &targetContext},
         .further = {&modifiersStatus, &delayAfterKeystroke}},
    });
  }

  [[nodiscard]] intents::ValueType resultType() const override {
    return intents::ValueTraits<intents::Nothing>::type();
  }

private:
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    const automation::KeyboardModifiers modifiers{
        .command = *modCmd, .control = *modCtrl, .function = *modFn, .option = *modOpt, .shift = *modShift};
    // Before anything comes to the front: without a key there is nothing to do.
    const platform::Key key = namedKey->key();
    co_await aim();
    co_await onThread([this, key, modifiers](const platform::CallLimits& limits) {
      press(key, automation::pressedModifiers(modifiers.flags()), limits);
    });
    giveNotices(host);
    if (notice_) {
      notice_->sentence += " The key went to what is in front.";
      host.notice(*notice_);
    }
    co_return Outcome{};
  }

  /// A key that the keyboard doesn't have is no failure, but told.
  void press(const platform::Key& key, const platform::KeyModifiers& modifiers, const platform::CallLimits& limits) {
    try {
      services().desktop.keyboard.press(key, modifiers, limits);
    } catch (const platform::DesktopFailure& failure) {
      if (failure.kind() != platform::DesktopFault::noSuchKey)
        throw;
      platform::giveNotice(limits, platform::asCause(failure));
    }
  }

  /// A target that can't be brought to the front is no failure: the key is pressed all the same.
  platform::Task<void> aim() {
    if (targetContext->id == systemwide)
      co_return;
    // The lookup only tells whether there is a browser: what comes forward is the application in front.
    co_await resolved(*targetContext);
    const std::string id = targetContext->id;
    const auto application = co_await tryToActivate(id);
    if (!application && id != engine::frontmostTargetContext().id)
      notice_ = unknownApplication(id, services().desktop);
  }

  std::optional<platform::Notice> notice_; ///< of a target that isn't there

  /// Whichever application has the keyboard.
  static constexpr std::string_view systemwide = ".systemwide";
};

template std::unique_ptr<ActionFrame> makeAction<SimulateNamedKeyPress>(const ActionServices&);

} // namespace tabwright::actions
