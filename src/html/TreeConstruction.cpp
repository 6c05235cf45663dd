// The standard's insertion modes up to "after head" are a phase that only goes forward; each token either belongs to it
// or begins the body. The head is in the tree from the start and opened only while an element is put into it, so
// nothing has to be moved there later.
#include "html/TreeConstruction.h"

#include "html/WhiteSpace.h"

#include <algorithm>
#include <utility>

namespace tabwright::html {

TreeConstruction::TreeConstruction(std::string_view page, Arena& texts, Arena& nodes)
    : tokenizer_(page, texts), texts_(texts), tree_(nodes),
      budget_(10'000 + std::min<std::size_t>(page.size() / 4, 1'000'000)) {}

const NodeRecord& TreeConstruction::run() {
  Element& html = tree_.makeElement("html", {}, traitsOf("html"));
  push(html);
  head_ = &tree_.makeElement("head", {}, traitsOf("head"));
  tree_.insert(*head_, html);
  for (;;) {
    const Token& token = tokenizer_.next(current().has(isForeign));
    if (token.kind == Token::Kind::end)
      break;
    take(token);
  }
  if (phase_ < Phase::inBody)
    enterBody();
  flushText();
  return html;
}

void TreeConstruction::take(const Token& token) {
  // Taken back by whatever comes next: only a text right behind the tag has such a line feed.
  const bool skipsLineFeed = std::exchange(skipsLineFeed_, false);
  if (belongsToForeign(token))
    return takeForeign(token);
  switch (token.kind) {
  case Token::Kind::text: {
    std::string_view text = readText(token.text, TextPlace::content, room_);
    text.remove_prefix(skipsLineFeed && text.starts_with('\n') ? 1 : 0);
    return takeText(text);
  }
  case Token::Kind::characterData:
    return takeText(readText(token.text, TextPlace::raw, room_));
  case Token::Kind::startTag:
    return start(token);
  case Token::Kind::endTag:
    return phase_ < Phase::inBody ? endBeforeBody(token) : end(token);
  case Token::Kind::doctype:
    if (phase_ == Phase::initial) {
      isQuirky_ = false;
      phase_ = Phase::beforeHead;
    }
    return;
  default:
    return;
  }
}

void TreeConstruction::enterBody(std::span<const Attribute> attributes) {
  phase_ = Phase::inBody;
  insertElement("body", traitsOf("body"), attributes);
}

// True when the tag has been dealt with.
bool TreeConstruction::startBeforeBody(const Token& token) {
  const Tag tag = token.traits.tag;
  if (phase_ == Phase::inFrameset)
    return true;
  if (tag == tag_html) {
    // The first `html` tag gives the root its attributes; later ones add none.
    if (phase_ < Phase::inHead && current().count == 0)
      tree_.setAttributes(current(), token.attributes);
    phase_ = std::max(phase_, Phase::beforeHead);
    return true;
  }
  if (tag == tag_head || (tag == tag_noscript && phase_ < Phase::afterHead)) {
    if (tag == tag_head && phase_ < Phase::inHead)
      tree_.setAttributes(*head_, token.attributes);
    phase_ = std::max(phase_, Phase::inHead);
    return true;
  }
  if (token.traits.has(inHead)) {
    phase_ = std::max(phase_, Phase::inHead);
    // Opened for this element alone, also when it comes behind the head's end tag: it belongs there all the same.
    push(*head_);
    if (tag == tag_title)
      takeUnmarked(token);
    else
      insertElement(token);
    takeOut(1);
    return true;
  }
  if (tag == tag_frameset) {
    phase_ = Phase::inFrameset;
    return true;
  }
  enterBody(tag == tag_body ? token.attributes : std::span<const Attribute>());
  return tag == tag_body;
}

void TreeConstruction::endBeforeBody(const Token& token) {
  switch (token.traits.tag) {
  case tag_head:
    phase_ = Phase::afterHead;
    return;
  // These ends without a start make an empty body.
  case tag_body:
  case tag_html:
    return enterBody();
  case tag_br:
    enterBody();
    return end(token);
  default:
    phase_ = std::max(phase_, Phase::beforeHead);
    return;
  }
}

// An element that holds nothing but text, from its start tag to its end tag.
void TreeConstruction::takeUnmarked(const Token& token) {
  const Tag tag = token.traits.tag;
  const bool isRaw = tag == tag_xmp || tag == tag_plaintext;
  // Both show their text as it stands, as `pre` does.
  isRaw ? insertElement(tag_pre) : insertElement(token);
  std::string_view text = readText(tokenizer_.takeContent(), isRaw ? TextPlace::raw : TextPlace::foreign, room_);
  text.remove_prefix(tag == tag_textarea && text.starts_with('\n') ? 1 : 0);
  insertText(text);
  pop();
}

void TreeConstruction::skipTemplate() {
  for (int depth = 1; depth > 0;) {
    const Token& token = tokenizer_.next(false);
    const Tag tag = token.traits.tag;
    if (token.kind == Token::Kind::end)
      return;
    if (token.kind == Token::Kind::endTag && tag == tag_template)
      --depth;
    else if (token.kind == Token::Kind::startTag && tag == tag_template)
      ++depth;
    // A "</template>" in a script or a text is no tag.
    else if (token.kind == Token::Kind::startTag && token.traits.has(isUnread | isUnmarked))
      tokenizer_.skipContent();
  }
}

} // namespace tabwright::html
