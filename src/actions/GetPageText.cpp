// Reads a page as Markdown or plain text. The page gives the HTML of what it shows, and the address that its links are
// relative to; the text is made of that here. A long text is given in parts, which end where a block does.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "actions/enums/GetPageTextOptions.h"
#include "browserdata/PageText.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace tabwright::actions {

namespace {

// Of large pages the HTML takes its time.
constexpr double htmlTimeout = 10.0;

// The place of a character, in bytes; the end for one behind it.
std::size_t placeOf(std::string_view text, std::int64_t character) {
  std::size_t place = 0;
  for (; place < text.size(); ++place) {
    const bool beginsCharacter = (static_cast<unsigned char>(text[place]) & 0xC0U) != 0x80U;
    if (beginsCharacter && character-- <= 0)
      break;
  }
  return place;
}

std::int64_t charactersOf(std::string_view text) {
  return std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
}

// At most `length` bytes, up to the end of a block or at least of a line, where that leaves half of them.
std::string_view beginOf(std::string_view text, std::size_t length) {
  if (length >= text.size())
    return text;
  const std::string_view whole = text.substr(0, length);
  for (const std::string_view end : {"\n\n", "\n"})
    if (const std::size_t place = whole.rfind(end); place != std::string_view::npos && place >= length / 2)
      return whole.substr(0, place + end.size());
  return whole;
}

} // namespace

class GetPageText final : public ScriptAction<std::vector<std::string>, std::string> {
  using Format = GetPageText_FormatOption;

  TabTarget tab{*this, services()};
  Parameter<std::string> cssSelector{*this,
                                     {.name = "cssSelector",
                                      .presence = intents::Presence::optional,
                                      .textInput = shared::literalInput(),
                                      .example = "article"}};
  Parameter<bool> mainContent{*this, {.name = "mainContent", .defaultValue = false}};
  Parameter<Format> format{*this, {.name = "format", .defaultValue = Format::markdown}};
  Parameter<std::int64_t> startAt{*this, {.name = "startAt", .defaultValue = 0}};
  Parameter<std::int64_t> maximumLength{
      *this, {.name = "maximumLength", .defaultValue = 30'000, .audience = intents::Audience::people}};

public:
  explicit GetPageText(const ActionServices& services)
      : ScriptAction(services, "GetPageText", intents::tables::webPages,
                     {.readsOnly = true, .isWrittenByPages = true}) {
    aimAtTab(tab);
    summarise(tab.summary({&format}, {}, {&cssSelector, &mainContent, &startAt, &maximumLength}));
  }

private:
  [[nodiscard]] std::string selector() const { return cssSelector.value().value_or(""); }

  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, "return getShownHTML(\"" + engine::escapeForJavascript(selector()) + "\")", htmlTimeout);
  }

  /// The HTML and its base; anything else is no page.
  static bool hasPage(const std::vector<std::string>& answer) { return answer.size() == 2; }

  [[nodiscard]] browserdata::PageText::Result converted(const std::vector<std::string>& answer) const {
    using browserdata::PageText;
    return PageText{.html = answer.front(),
                    .base = answer.back(),
                    .form = *format == Format::plain ? browserdata::TextForm::plain : browserdata::TextForm::markdown,
                    .part = *mainContent ? PageText::Part::mainContent : PageText::Part::whole}
        .convert();
  }

  [[nodiscard]] std::string_view partOf(std::string_view text) const {
    text.remove_prefix(placeOf(text, *startAt));
    return *maximumLength > 0 ? beginOf(text, placeOf(text, *maximumLength)) : text;
  }

  [[nodiscard]] std::string result(std::vector<std::string> answer,
                                   const engine::TargetContext& /*browser*/) const override {
    static_cast<void>(answerOf(answer));
    return hasPage(answer) ? std::string(partOf(converted(answer).text)) : std::string();
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    constexpr std::string_view undone = "Nothing was read";
    if (answer.empty())
      return std::nullopt;
    if (!hasPage(answer)) {
      if (answer.front() != engine::AppleScriptSnippets::emptyResultMarker())
        return noticeOfException(answer, undone);
      return noticeOfNothing({"false"}, undone, noSuchElement(selector()));
    }
    const browserdata::PageText::Result page = converted(answer);
    std::string sentences;
    if (*mainContent && page.part == browserdata::PageText::Part::whole)
      sentences = "The page’s main content can’t be told from the rest of it: this is all of it. ";
    if (const std::string leftOut = leftOutOf(page.text); !leftOut.empty())
      sentences += leftOut;
    if (sentences.empty())
      return std::nullopt;
    return platform::Notice{{"Notice", "pageText", {}},
                            std::string(platform::trimmingWhitespaceAndNewlines(sentences))};
  }

  [[nodiscard]] std::string leftOutOf(std::string_view text) const {
    const std::string_view part = partOf(text);
    const auto begin = static_cast<std::size_t>(part.data() - text.data());
    const std::int64_t all = charactersOf(text);
    const std::int64_t first = charactersOf(text.substr(0, begin));
    const std::int64_t end = first + charactersOf(part);
    if (first == 0 && end == all)
      return {};
    std::string sentence = fmt::format("These are the characters {} to {} of {}.", first, end, all);
    if (end < all)
      sentence += fmt::format(" The rest is left out: startAt {} gives the next part.", end);
    return sentence;
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetPageText>(const ActionServices&);

} // namespace tabwright::actions
