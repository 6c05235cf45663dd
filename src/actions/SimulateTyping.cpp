// Types a text character by character, by a program that speaks to System Events. Its lines return nothing, so the
// program comes to the end of its main handler, which tells that as failure 0: here that is the success.
#include "actions/ActionList.h"
#include "actions/KeyboardParameters.h"
#include "actions/ScriptAction.h"
#include "actions/SharedParameters.h"
#include "actions/UnknownApplication.h"
#include "actions/enums/TypingDelay.h"
#include "automation/ApplicationLaunch.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/AxeError.h"
#include "platform/Characters.h"

#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::actions {

/// The answer of a program that has none to give.
struct NoAnswer {
  static NoAnswer fromJSON(const platform::JSONReader&) { return {}; }
};

class SimulateTyping final : public ScriptAction<NoAnswer, intents::Nothing> {
  /// Shortcuts are short: with a modifier held, more characters than these are probably a mistake.
  static constexpr std::size_t mostUnasked = 5;
  static constexpr std::chrono::seconds longestStart{30};

  Parameter<targets::ApplicationTarget> targetContext{*this, shared::targetApplication(services())};
  Parameter<std::string> characters{*this, {.name = "characters", .example = "Hello"}};
  Parameter<KeyboardModifiersStatus> modifiersStatus{*this, keyboardparameters::modifiersStatus()};
  Parameter<bool> modCmd{*this, keyboardparameters::modifier("modCmd")};
  Parameter<bool> modCtrl{*this, keyboardparameters::modifier("modCtrl")};
  Parameter<bool> modOpt{*this, keyboardparameters::modifier("modOpt")};
  Parameter<bool> modShift{*this, keyboardparameters::modifier("modShift")};
  Parameter<TypingDelay> keystrokeDelay{*this, {.name = "keystrokeDelay", .defaultValue = TypingDelay::none}};
  Parameter<bool> isFootGunModeEnabled{*this, {.name = "isFootGunModeEnabled", .defaultValue = false}};

public:
  explicit SimulateTyping(const ActionServices& services)
      : ScriptAction(services, "SimulateTyping", intents::tables::browsers, {.destroys = true}) {
    aimAt(targetContext);
    summarise({
        {.when = {is(modifiersStatus, KeyboardModifiersStatus::enabled)},
         .key = "modifiersStatus.enabled",
         .sentence = {&characters, &targetContext, &keystrokeDelay, &modCmd, &modCtrl, &modOpt, &modShift},
         .further = {&modifiersStatus, &isFootGunModeEnabled}},
        {.key = "defaultCase",
         .sentence = {&characters, &targetContext, &keystrokeDelay},
         .further = {&modifiersStatus, &isFootGunModeEnabled}},
    });
  }

private:
  platform::Task<void> prepare(intents::ActionHost& host) override {
    if (isDangerous())
      co_await confirm(host);
    engine::TargetContext application = co_await resolved(target());
    application = automation::withWholeID(std::move(application), services().desktop);
    // The program names its application by the whole id, which a short name doesn't give.
    targetContext.set(targets::ApplicationTarget(std::move(application)));
  }

  [[nodiscard]] bool isDangerous() const {
    return !*isFootGunModeEnabled && (*modCmd || *modCtrl || *modShift || *modOpt) &&
           platform::characterCount(*characters) > mostUnasked;
  }

  static platform::Task<void> confirm(intents::ActionHost& host) {
    const intents::LocalizedText question{
        "Type more than 5 characters with modifier keys? Each of them may be a shortcut."};
    try {
      co_await host.requestConfirmation(question);
    } catch (intents::ConfirmationRefused& refused) {
      refused.setCause(
          platform::Notice{refused.identity(),
                           "Nothing was typed. More than 5 characters with modifier keys are typed only when somebody "
                           "says yes, or with isFootGunModeEnabled."});
      throw;
    }
  }

  [[nodiscard]] std::string scriptBody() const override {
    std::vector<std::string_view> held;
    for (const auto& [isHeld, word] : {std::pair(*modCmd, "command"), std::pair(*modOpt, "option"),
                                       std::pair(*modCtrl, "control"), std::pair(*modShift, "shift")}) {
      if (isHeld)
        held.emplace_back(word);
    }
    const bool isLower = *modifiersStatus == KeyboardModifiersStatus::enabled;
    const std::string text = isLower ? platform::inLowerCase(*characters) : *characters;
    return engine::AppleScriptSnippets::typing(
        {.text = text, .modifiers = held, .secondsBetween = secondsOf(*keystrokeDelay)}, targetContext->id);
  }

  [[nodiscard]] engine::TellSystemEvents tellSystemEvents() const override { return engine::TellSystemEvents::yes; }

  [[nodiscard]] intents::Nothing result(NoAnswer, const engine::TargetContext& /*browser*/) const override {
    return {};
  }

  /// The program can't even be read where its application is unknown.
  platform::Task<void> requireApplication() {
    const automation::DesktopServices& desktop = services().desktop;
    const std::string id = targetContext->id;
    if (desktop.targets.findApplication(id))
      co_return;
    const auto started =
        co_await automation::activateOrLaunch(id, desktop, platform::CallLimits{}.within(longestStart));
    if (!started)
      throw platform::failure(engine::AxeError::appCouldNotBeActivated).causedBy(unknownApplication(id, desktop));
  }

  // Every line is the action's own, so failures in them are told by their lines …
  [[nodiscard]] std::optional<std::size_t> userLine(std::size_t line) const override { return line; }

  // … and one without a line is of what comes behind them: the program came to its end, or it has asked the browser for
  // its version, which one that can't be reached doesn't tell.
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    co_await requireApplication();
    try {
      co_return co_await ScriptAction::run(host);
    } catch (const platform::CatalogueFailure<engine::AppleScriptRuntimeError>& failure) {
      if (failure.kind() != engine::AppleScriptRuntimeError::frontAppIsNotABrowser)
        throw;
    } catch (const platform::Failure& failure) {
      if (!failure.cause() || failure.cause()->line || failure.identity().type != "ScriptacularError")
        throw;
    }
    co_return Outcome{};
  }
};

template std::unique_ptr<ActionFrame> makeAction<SimulateTyping>(const ActionServices&);

} // namespace tabwright::actions
