// The page is read where it lies: texts stay views of it, and only names and values are copied to the arena. The states
// of the standard that differ in their errors alone are one here.
#include "html/Tokenizer.h"

#include "html/Document.h"
#include "html/ParseFault.h"
#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"

#include <algorithm>

namespace tabwright::html {

namespace {

constexpr bool isLetter(char character) {
  const char lower = platform::lowercasedLetter(character);
  return lower >= 'a' && lower <= 'z';
}

} // namespace

const Token& Tokenizer::next(bool isForeign) {
  while (place_ < page_.size()) {
    std::size_t end = place_;
    // A "<" that begins no markup is part of the text around it.
    while (end < page_.size() && !isMarkup(end))
      end = std::min(page_.find('<', end + 1), page_.size());
    if (end > place_) {
      token_.kind = Token::Kind::text;
      token_.text = page_.substr(place_, end - place_);
      place_ = end;
      return token_;
    }
    // Comments and the like give no token: the search for text goes on behind them.
    if (readMarkup(isForeign))
      return token_;
  }
  token_.kind = Token::Kind::end;
  return token_;
}

// Else a "<" is text like any other character.
bool Tokenizer::isMarkup(std::size_t place) const {
  const char behind = at(place + 1);
  return at(place) == '<' &&
         (isLetter(behind) || behind == '!' || behind == '?' || (behind == '/' && place + 2 < page_.size()));
}

// False when there is nothing in it for the tree.
bool Tokenizer::readMarkup(bool isForeign) {
  const std::string_view rest = page_.substr(place_);
  if (isLetter(at(place_ + 1)))
    return readTag(place_ + 1);
  if (at(place_ + 1) == '/' && isLetter(at(place_ + 2)))
    return readTag(place_ + 2);
  if (rest.starts_with("<!--")) {
    skipComment();
    return false;
  }
  constexpr std::string_view characterData = "<![CDATA[";
  if (isForeign && rest.starts_with(characterData)) {
    const std::string_view content = rest.substr(characterData.size(), rest.find("]]>") - characterData.size());
    token_.kind = Token::Kind::characterData;
    token_.text = content;
    place_ = std::min(place_ + characterData.size() + content.size() + 3, page_.size());
    return true;
  }
  // All else up to the next ">" is a comment ("bogus comment"), but for a doctype.
  const std::string_view content = rest.substr(2, rest.find('>') - 2);
  place_ = std::min(place_ + content.size() + 3, page_.size());
  constexpr std::string_view doctype = "doctype";
  if (rest[1] != '!' || !platform::equalIgnoringCase(content.substr(0, doctype.size()), doctype))
    return false;
  token_.kind = Token::Kind::doctype;
  token_.text = content.substr(doctype.size());
  return true;
}

void Tokenizer::skipComment() {
  const std::string_view rest = page_.substr(place_ + 4);
  // A comment that isn't closed takes the rest of the page, as the standard says.
  std::size_t length = rest.size();
  // "<!-->" and "<!--->" are whole comments.
  if (rest.starts_with(">"))
    length = 1;
  else if (rest.starts_with("->"))
    length = 2;
  else {
    std::size_t end = rest.find("--");
    while (end != std::string_view::npos && !rest.substr(end).starts_with("-->") &&
           !rest.substr(end).starts_with("--!>"))
      end = rest.find("--", end + 1);
    if (end != std::string_view::npos)
      length = end + (rest[end + 2] == '!' ? 4 : 3);
  }
  place_ += 4 + length;
}

// A name in lower case, as the arena keeps it.
std::string_view Tokenizer::lowercasedName(std::string_view name) {
  name = html::readText(name, TextPlace::raw, room_);
  char* const lower = static_cast<char*>(texts_.allocate(name.size()));
  std::ranges::transform(name, lower, platform::lowercasedLetter);
  return {lower, name.size()};
}

// False when the page ends in the tag: then it is none.
bool Tokenizer::readTag(std::size_t nameBegin) {
  token_.kind = page_[place_ + 1] == '/' ? Token::Kind::endTag : Token::Kind::startTag;
  std::size_t place = nameBegin;
  while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '/' && page_[place] != '>')
    ++place;
  token_.name.assign(html::readText(page_.substr(nameBegin, place - nameBegin), TextPlace::raw, room_));
  std::ranges::transform(token_.name, token_.name.begin(), platform::lowercasedLetter);
  token_.traits = traitsOf(token_.name);
  readAttributes(place);
  place_ = std::min(place + 1, page_.size());
  if (place >= page_.size())
    return false;
  token_.isSelfClosing = page_[place - 1] == '/' && !endsInValue_;
  // Counted as they are read rather than kept, so a page beyond the bound costs no more than one at it.
  if (++tagsAndAttributes_ > Document::maximumMarkup)
    throw ParseFault(ParseFault::Bound::tagsAndAttributes, Document::maximumMarkup);
  return true;
}

// Goes to the ">" of a tag, or to the page's end.
void Tokenizer::readAttributes(std::size_t& place) {
  token_.attributes.clear();
  endsInValue_ = false;
  for (int count = 0; place < page_.size(); ++count) {
    for (; isSpace(at(place)) || at(place) == '/'; ++place)
      endsInValue_ = false;
    if (at(place) == '>' || place >= page_.size())
      return;
    const std::size_t begin = place;
    do // a first "=" belongs to the name
      ++place;
    while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '/' && page_[place] != '>' &&
           page_[place] != '=');
    const std::string_view name = page_.substr(begin, place - begin);
    std::size_t afterBlanks = place;
    while (isSpace(at(afterBlanks)))
      ++afterBlanks;
    std::string_view value;
    endsInValue_ = at(afterBlanks) == '=';
    if (endsInValue_) {
      place = afterBlanks + 1;
      value = readValue(place);
    }
    if (count >= Document::maximumAttributes)
      continue;
    ++tagsAndAttributes_;
    if (token_.kind == Token::Kind::endTag)
      continue;
    const std::string_view lower = lowercasedName(name);
    if (std::ranges::find(token_.attributes, lower, &Attribute::name) == token_.attributes.end())
      token_.attributes.push_back({lower, texts_.copy(html::readText(value, TextPlace::attribute, room_))});
  }
}

std::string_view Tokenizer::readValue(std::size_t& place) {
  while (isSpace(at(place)))
    ++place;
  std::size_t begin = place;
  if (const char quote = at(place); quote == '"' || quote == '\'') {
    const std::size_t end = std::min(page_.find(quote, ++begin), page_.size());
    place = std::min(end + 1, page_.size());
    endsInValue_ = false;
    return page_.substr(begin, end - begin);
  }
  while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '>')
    ++place;
  return page_.substr(begin, place - begin);
}

std::string_view Tokenizer::takeContent() {
  const std::size_t begin = place_;
  std::size_t end = place_;
  while ((end = page_.find("</", end)) != std::string_view::npos) {
    const char behind = at(end + 2 + token_.name.size());
    if (token_.traits.tag != tag_plaintext &&
        platform::equalIgnoringCase(page_.substr(end + 2, token_.name.size()), token_.name) &&
        (isSpace(behind) || behind == '/' || behind == '>'))
      break;
    end += 2;
  }
  end = std::min(end, page_.size());
  place_ = end;
  if (end < page_.size()) { // its end tag may have attributes
    place_ += 2 + token_.name.size();
    token_.kind = Token::Kind::endTag;
    readAttributes(place_);
    place_ = std::min(place_ + 1, page_.size());
  }
  return page_.substr(begin, end - begin);
}

// A script that writes a script inside a comment goes on behind the inner one's end: the standard's "script data double
// escaped" states.
void Tokenizer::skipContent() {
  const bool isScript = token_.traits.tag == tag_script;
  bool isInner = false;
  do {
    const std::string_view content = takeContent();
    const std::size_t comment = content.rfind("<!--");
    const bool isOpen = comment != std::string_view::npos && content.find("-->", comment) == std::string_view::npos;
    isInner = isScript && !isInner && isOpen &&
              platform::lowercased(content.substr(comment)).find("<script") != std::string::npos;
  } while (isInner && place_ < page_.size());
}

} // namespace tabwright::html
