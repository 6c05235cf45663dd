// The selection's Markdown and rich text are made here, once, when the record becomes an entity. A selection that can't
// be converted leaves its property empty or says so: the rest of the result is worth more than its form.
#include "browserdata/BrowserTabEntity.h"

#include "browserdata/EntityReference.h"
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageFragment.h"
#include "browserdata/RichText.h"
#include "engine/ScriptText.h"
#include "html/ParseFault.h"
#include "platform/Logger.h"
#include "platform/Whitespace.h"

namespace tabwright::browserdata {

using intents::PropertyPresence;

namespace {

const platform::Logger log("BrowserTabEntity");

// The file is plain rich text, whatever its name says: word processors of every kind open it.
std::optional<intents::IntentFile> richTextFile(const std::string& html) {
  try {
    return intents::IntentFile{richText(parseFragment(html)), "selection.rtfd", "com.apple.rtfd"};
  } catch (const html::ParseFault& fault) {
    log.error("Error converting HTML to AttributedString: {}", fault.errorDescription());
    return std::nullopt;
  }
}

std::string markdownText(const std::string& html) {
  try {
    return HTMLToMarkdown{html}.convert();
  } catch (const platform::Failure&) {
    return "ERROR: Unable to convert HTML";
  }
}

} // namespace

BrowserTabEntity::BrowserTabEntity(const BrowserTabData& tab, const engine::TargetContext& context)
    : targetContext(context), title(tab.tabTitle), url(tab.tabURL), htmlDocument(tab.htmlContent),
      textContent(tab.textContent), selectionText(tab.pageSelectionText), isLoading(tab.isLoading),
      isPrivate(tab.isPrivate), fullID(context.id + ":" + tab.tabID) {
  // Most tabs of a list have none, and cost no conversion.
  if (platform::isBlank(tab.pageSelectionHTML))
    return;
  selectionRTFD = richTextFile(tab.pageSelectionHTML);
  selectionMD = markdownText(tab.pageSelectionHTML);
}

std::optional<BrowserTabEntity> BrowserTabEntity::fromReference(std::string_view text) {
  const std::optional<EntityReference> reference = readReference(text);
  if (!reference)
    return std::nullopt;
  BrowserTabEntity tab;
  tab.targetContext = reference->targetContext;
  tab.fullID = reference->fullID;
  return tab;
}

void BrowserTabEntity::check() const {
  requireReference(fullID);
}

std::string BrowserTabEntity::id() const {
  return engine::nativeID(fullID);
}

std::string BrowserTabEntity::displayRepresentation() const {
  return title + " [" + targetContext.name + "]";
}

const intents::EntityDefinition<BrowserTabEntity>& BrowserTabEntity::definition() {
  static const intents::EntityDefinition<BrowserTabEntity> definition(
      "BrowserTabEntity",
      {{"targetContext", &BrowserTabEntity::targetContext, PropertyPresence::needed},
       {"title", &BrowserTabEntity::title},
       {"url", &BrowserTabEntity::url},
       {"htmlDocument", &BrowserTabEntity::htmlDocument},
       {"textContent", &BrowserTabEntity::textContent},
       {"selectionText", &BrowserTabEntity::selectionText},
       {"selectionMD", &BrowserTabEntity::selectionMD},
       {"isLoading", &BrowserTabEntity::isLoading},
       {"isPrivate", &BrowserTabEntity::isPrivate},
       {"fullID", &BrowserTabEntity::fullID, PropertyPresence::needed},
       {"selectionRTFD", &BrowserTabEntity::selectionRTFD}},
      [](const BrowserTabEntity& tab) { return tab.displayRepresentation(); }, intents::TextForm::names,
      // The columns of its tables.
      {"title", "url", "isPrivate", "fullID"});
  return definition;
}

} // namespace tabwright::browserdata
