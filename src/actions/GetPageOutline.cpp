// Outlines a page: one job walks it and gives the outline's text and its elements, as JSON. The page keeps nothing of
// it but the references that were given, where it doesn't see them.
#include "actions/ActionList.h"
#include "actions/NamedElement.h"
#include "actions/PageJob.h"
#include "browserdata/PageOutlineEntity.h"
#include "engine/PageLibrary.h"
#include "engine/ScriptText.h"
#include "engine/errors/ElementError.h"
#include "platform/JSONFailure.h"
#include "platform/JSONText.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>

namespace tabwright::actions {

class GetPageOutline final : public ScriptAction<std::vector<std::string>, browserdata::PageOutlineEntity> {
  TabTarget tab{*this, services()};
  Parameter<bool> isInteractiveOnly{*this, {.name = "isInteractiveOnly", .defaultValue = false}};
  Parameter<bool> isChangesOnly{*this, {.name = "isChangesOnly", .defaultValue = false}};
  Parameter<std::string> belowElement{*this,
                                      {.name = "belowElement",
                                       .presence = intents::Presence::optional,
                                       .textInput = shared::literalInput(),
                                       .example = "main"}};
  Parameter<std::int64_t> maximumLength{
      *this, {.name = "maximumLength", .defaultValue = 30'000, .audience = intents::Audience::people}};

  // Seconds, for a page of a hundred thousand elements on a machine that does other things besides.
  static constexpr double timeout = 20.0;

public:
  explicit GetPageOutline(const ActionServices& services)
      : ScriptAction(services, "GetPageOutline", intents::tables::webPages, {.readsOnly = true}) {
    aimAtTab(tab);
    summarise(tab.summary({}, {}, {&isInteractiveOnly, &isChangesOnly, &belowElement, &maximumLength}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    const std::string below = elementText(belowElement.value().value_or(""));
    const std::string literal = "\"" + engine::escapeForJavascript(below) + "\"";
    return pageJob(tab,
                   fmt::format("{}return [\n  pageOutline({{ isInteractiveOnly: {}, isChangesOnly: {}, "
                               "below: {}, length: {} }})\n]",
                               engine::outlineLibrary(), *isInteractiveOnly, *isChangesOnly, literal,
                               std::max<std::int64_t>(0, *maximumLength)),
                   timeout);
  }

  [[nodiscard]] browserdata::PageOutlineEntity result(std::vector<std::string> answer,
                                                      const engine::TargetContext& /*browser*/) const override {
    const std::string& text = answerOf(answer);
    try {
      const boost::json::value json = platform::parseJSON(text);
      return platform::JSONReader(json).read<browserdata::PageOutlineEntity>();
    } catch (const platform::JSONFailure&) {
      // The text of an exception: the page has changed what the language comes with.
      throw engine::ElementFailure(engine::ElementError::unreadable, "", text);
    } catch (const platform::JSONMismatch& mismatch) {
      throw engine::ElementFailure(engine::ElementError::unreadable, "", mismatch.errorDescription());
    }
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetPageOutline>(const ActionServices&);

} // namespace tabwright::actions
