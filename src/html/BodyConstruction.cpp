// The insertion mode "in body", into which all others lead. A token is taken by the rules of the innermost structure
// first: what a table's parts, hidden inputs and forms do is settled before the body's own rules see it, and all else
// in a table's structure goes before the table. Each tag has its case below where the traits of `Tags.cpp` don't say it
// all.
#include "html/Document.h"
#include "html/TreeConstruction.h"
#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <utility>

namespace tabwright::html {

void TreeConstruction::takeText(std::string_view text) {
  if (phase_ == Phase::inFrameset)
    return;
  const auto ink = static_cast<std::size_t>(std::ranges::find_if_not(text, isSpace<char>) - text.begin());
  const bool isBlank = ink == text.size();
  if (phase_ < Phase::inBody || current().tag.tag == tag_colgroup) {
    if (phase_ == Phase::inBody)
      insertText(text.substr(0, ink));
    if (isBlank)
      return;
    text.remove_prefix(ink);
    phase_ < Phase::inBody ? enterBody() : pop();
  }
  // White space may stand between a table's rows; any other text goes before the table ("foster parenting").
  const bool isInStructure = isStructure(current());
  isFostering_ = isInStructure && !isBlank;
  if (!isInStructure || isFostering_)
    reconstructFormatting();
  insertText(text);
  isFostering_ = false;
}

void TreeConstruction::start(const Token& token) {
  const TagTraits traits = token.traits;
  const Tag tag = traits.tag;
  // Passed over whole, so that nothing in it is taken for markup of the page.
  if (traits.has(isUnread) || tag == tag_template) {
    if (phase_ < Phase::inBody && !traits.has(inHead) && tag != tag_template)
      enterBody();
    phase_ = std::max(phase_, Phase::inHead);
    if (tag == tag_template)
      return skipTemplate();
    return tokenizer_.skipContent();
  }
  if (phase_ != Phase::inBody && startBeforeBody(token))
    return;
  if (current().tag.tag == tag_colgroup && tag != tag_col)
    pop();
  if (traits.has(isRow) && (tag != tag_table || isInTable()))
    return startInTable(token);
  if (isInTable()) {
    // Hidden inputs and forms are the two that the standard leaves where they stand in a table.
    const auto type = std::ranges::find(token.attributes, "type", &Attribute::name);
    const bool isHidden =
        tag == tag_input && type != token.attributes.end() && platform::equalIgnoringCase(type->value, "hidden");
    if (isHidden || tag == tag_form) {
      if (tag == tag_form && form_)
        return;
      Element& element = insertElement(token);
      if (tag == tag_form) {
        form_ = &element;
        pop();
      }
      return;
    }
  }
  isFostering_ = isInTable();
  startInBody(token);
  isFostering_ = false;
}

void TreeConstruction::startInBody(const Token& token) {
  const TagTraits traits = token.traits;
  const Tag tag = traits.tag;
  // A page without doctype has tables inside paragraphs, and a second form is dropped before it can close anything.
  if (traits.has(closesParagraph) && (tag != tag_table || !isQuirky_) && (tag != tag_form || !form_))
    closeParagraph();
  // Headings don't nest.
  if (traits.has(isHeading) && current().has(isHeading))
    pop();
  // Formatting is opened again before the element, but for most special ones, which it is carried into instead.
  bool resumes = !traits.has(isSpecial) || traits.has(resumesFormatting);

  switch (tag) {
  case tag_html:
  case tag_head:
  case tag_body:
  case tag_frame:
  case tag_frameset:
    return;
  case tag_xmp:
    reconstructFormatting();
    [[fallthrough]];
  case tag_title:
  case tag_textarea:
  case tag_plaintext:
    return takeUnmarked(token);
  case tag_form:
    if (!form_)
      form_ = &insertElement(token);
    return;
  case tag_li:
    closeItem(tag_li, tag_li);
    break;
  case tag_dd:
  case tag_dt:
    closeItem(tag_dd, tag_dt);
    break;
  // A button in a button ends the outer one.
  case tag_button:
    closeInScope(tag_button);
    break;
  // A select within another one only ends it.
  case tag_select:
    if (closeInScope(tag_select))
      return;
    break;
  case tag_input:
    closeInScope(tag_select);
    break;
  case tag_hr:
    if (isInScope(tag_select))
      closeImplied();
    break;
  case tag_optgroup:
  case tag_option:
    if (isInScope(tag_select))
      closeImplied(tag == tag_option ? tag_optgroup : tag_unknown);
    else if (current().tag.tag == tag_option)
      pop();
    break;
  case tag_rb:
  case tag_rtc:
  case tag_rp:
  case tag_rt:
    if (isInScope(tag_ruby))
      closeImplied(tag == tag_rp || tag == tag_rt ? tag_rtc : tag_unknown);
    resumes = false;
    break;
  case tag_a:
    // Links don't nest: an open one ends here, wherever it is.
    if (const Element* const earlier = lastFormatting(tag_a)) {
      endFormatting(token);
      if (const std::size_t place = placeOf(formatting_, *earlier); place != nowhere)
        eraseFormatting(place);
      if (earlier->isOpen)
        takeOut(placeOf(stack_, *earlier));
    }
    break;
  // As with links: one that is in scope ends here.
  case tag_nobr:
    reconstructFormatting();
    if (isInScope(tag_nobr))
      endFormatting(token);
    break;
  // The standard's own correction of a frequent mistake.
  case tag_image:
    reconstructFormatting();
    insertElement("img", traitsOf("img"), token.attributes);
    return;
  // The line feed right behind the start tag is no part of the text.
  case tag_pre:
  case tag_listing:
    skipsLineFeed_ = true;
    break;
  default:
    break;
  }

  if (resumes)
    reconstructFormatting();
  Element& element = insertElement(token);
  if (traits.has(isFormatting))
    addFormatting(&element);
  // Formatting from outside isn't carried into these.
  if (tag == tag_applet || tag == tag_marquee || tag == tag_object)
    addFormatting(nullptr);
  // The next token is read by the foreign rules, so an element that is closed already must not stay open.
  if (tag == tag_svg || tag == tag_math) {
    element.tag.traits = isForeign;
    if (token.isSelfClosing)
      pop();
  }
}

void TreeConstruction::end(const Token& token) {
  const TagTraits traits = token.traits;
  if (phase_ == Phase::inFrameset || traits.tag == tag_col)
    return;
  if (current().tag.tag == tag_colgroup && traits.tag != tag_colgroup)
    pop();
  if (traits.has(isRow))
    return endInTable(traits.tag);
  isFostering_ = isInTable();
  endInBody(token);
  isFostering_ = false;
}

void TreeConstruction::endInBody(const Token& token) {
  const TagTraits traits = token.traits;
  const Tag tag = traits.tag;
  if (traits.has(isFormatting))
    return endFormatting(token);
  if (traits.has(isHeading)) {
    // A heading's end tag closes any heading, as an `h2` is often ended by `</h3>`.
    for (std::size_t position = stack_.size(); position-- > 0 && !stack_[position]->has(boundsScope);)
      if (stack_[position]->has(isHeading))
        return closeThrough(position);
    return;
  }
  if (traits.has(isBlock)) {
    // These have put a marker on the list of formatting.
    if (closeInScope(tag) && traits.has(boundsScope) && tag != tag_select)
      clearToMarker();
    return;
  }
  switch (tag) {
  case tag_html:
  case tag_body:
    return;
  // `</br>` is read as `<br>`.
  case tag_br:
    return startInBody(token);
  case tag_p:
    // An end tag without a paragraph makes an empty one.
    if (find(tag_p, boundsScope, tag_button) == nowhere)
      insertElement(tag_p);
    return closeParagraph();
  case tag_li:
    closeInScope(tag_li, tag_ol, tag_ul);
    return;
  case tag_dd:
  case tag_dt:
    closeInScope(tag);
    return;
  case tag_form:
    return endForm();
  default:
    return endAny(token);
  }
}

// Only the form itself, whatever is open in it.
void TreeConstruction::endForm() {
  const Element* const form = std::exchange(form_, nullptr);
  if (!form || !form->isOpen)
    return;
  closeImplied();
  const std::size_t position = placeOf(stack_, *form);
  if (position != nowhere && find(tag_form, boundsScope) == position)
    takeOut(position);
}

// A new item ends the one that is open in the same list.
void TreeConstruction::closeItem(Tag tag, Tag other) {
  for (std::size_t position = stack_.size(); position-- > 0;) {
    const Element& element = *stack_[position];
    if (element.tag.tag == tag || element.tag.tag == other)
      return closeThrough(position);
    if (element.has(isSpecial) && element.tag.tag != tag_address && element.tag.tag != tag_div &&
        element.tag.tag != tag_p)
      return;
  }
}

void TreeConstruction::endAny(const Token& token) {
  for (std::size_t position = stack_.size(); position-- > 0;) {
    const Element& element = *stack_[position];
    if (element.tag.tag == token.traits.tag && element.name() == token.name)
      return closeThrough(position);
    // An end tag doesn't reach out of the block that it stands in.
    if (element.has(isSpecial))
      return;
  }
}

} // namespace tabwright::html
