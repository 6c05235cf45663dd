#include "html/BoundedMarkup.h"

#include "html/Document.h"
#include "html/OpenElements.h"
#include "html/ParseFault.h"
#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <array>

/// One pass over the page by the standard's section 13.2.5, "Tokenization". Text between tags is copied as it stands,
/// but that every `<` in it is written `&lt;`: what is left out between two pieces of text can then never join them to
/// a tag.
namespace tabwright::html {

namespace {

constexpr bool isLetter(char character) {
  const char lower = platform::lowercasedLetter(character);
  return lower >= 'a' && lower <= 'z';
}

template <std::size_t Count>
constexpr bool isOneOf(std::string_view name, const std::array<std::string_view, Count>& names) {
  return std::ranges::find(names, name) != names.end();
}

// Content that isn't part of the page as it is read, and needs no tree.
constexpr std::array<std::string_view, 5> unreadContent = {"script", "style", "iframe", "noembed", "noframes"};
// Content that is nothing but text.
constexpr std::array<std::string_view, 3> plainContent = {"title", "textarea", "xmp"};
// Tags that would do something odd, or nothing.
constexpr std::array<std::string_view, 3> unusedTags = {"frameset", "frame", "isindex"};
// Where HTML may stand inside drawings and formulas: the standard's integration points.
constexpr std::array<std::string_view, 8> integrationPoints = {
    "foreignobject", "desc", "annotation-xml", "mi", "mo", "mn", "ms", "mtext"};

class BoundedCopy {
public:
  explicit BoundedCopy(std::string_view page) : page_(page), open_(page.size()) { out_.reserve(page.size() + 16); }

  std::string run() {
    while (place_ < page_.size()) {
      const std::size_t bracket = std::min(page_.find('<', place_), page_.size());
      appendText(page_.substr(place_, bracket - place_));
      place_ = bracket;
      if (place_ < page_.size())
        readMarkup();
    }
    return std::move(out_);
  }

private:
  [[nodiscard]] char at(std::size_t place) const { return place < page_.size() ? page_[place] : '\0'; }
  [[nodiscard]] bool startsWith(std::string_view text) const {
    return platform::equalIgnoringCase(page_.substr(place_, text.size()), text);
  }

  // At a "<".
  void readMarkup() {
    if (isLetter(at(place_ + 1)))
      return readTag(place_ + 1);
    if (at(place_ + 1) == '/' && isLetter(at(place_ + 2)))
      return readTag(place_ + 2);
    if (startsWith("<!--"))
      return skipComment();
    if (startsWith("<![CDATA[") && foreignDepth_ > 0) {
      const std::size_t begin = place_ + 9;
      const std::size_t end = std::min(page_.find("]]>", begin), page_.size());
      appendPlain(page_.substr(begin, end - begin), Reference::text);
      place_ = std::min(end + 3, page_.size());
      return;
    }
    if (startsWith("<!") || startsWith("<?") || startsWith("</")) {
      const std::size_t end = std::min(page_.find('>', place_), page_.size() - 1) + 1;
      if (startsWith("<!doctype") && out_.empty())
        out_ += page_.substr(place_, end - place_);
      else
        separate();
      place_ = end;
      return;
    }
    appendPlain("<", Reference::text);
    ++place_;
  }

  void skipComment() {
    separate();
    const std::string_view rest = page_.substr(place_ + 4);
    std::size_t length = rest.size();
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

  // A tag whose name begins at `nameBegin`. One that the page ends in is no tag.
  void readTag(std::size_t nameBegin) {
    const std::size_t begin = place_;
    const bool isEnd = page_[begin + 1] == '/';
    std::size_t place = nameBegin;
    while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '/' && page_[place] != '>')
      ++place;
    name_.assign(page_.substr(nameBegin, place - nameBegin));
    std::ranges::transform(name_, name_.begin(), platform::lowercasedLetter);
    const std::size_t lastAttribute = skipAttributes(place);
    place_ = std::min(place + 1, page_.size());
    if (place >= page_.size())
      return;
    if (++tagsAndAttributes_ > Document::maximumMarkup)
      throw ParseFault(ParseFault::Bound::tagsAndAttributes, Document::maximumMarkup);
    markup_.assign(page_.substr(begin, lastAttribute - begin));
    markup_ += '>';
    isEnd ? endTag() : startTag(page_[place - 1] == '/');
  }

  // Goes to the ">" of a tag, or to the page's end. Yields where the last attribute ends that is kept.
  std::size_t skipAttributes(std::size_t& place) {
    int count = 0;
    std::size_t lastKept = place;
    while (place < page_.size()) {
      while (isSpace(at(place)) || at(place) == '/')
        ++place;
      if (at(place) == '>' || place >= page_.size())
        break;
      do // a first "=" belongs to the name
        ++place;
      while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '/' && page_[place] != '>' &&
             page_[place] != '=');
      std::size_t afterBlanks = place;
      while (isSpace(at(afterBlanks)))
        ++afterBlanks;
      if (at(afterBlanks) == '=') {
        place = afterBlanks + 1;
        skipValue(place);
      }
      if (++count <= Document::maximumAttributes)
        lastKept = place;
    }
    tagsAndAttributes_ += static_cast<std::size_t>(std::min(count, Document::maximumAttributes));
    return lastKept;
  }

  void skipValue(std::size_t& place) const {
    while (isSpace(at(place)))
      ++place;
    if (const char quote = at(place); quote == '"' || quote == '\'') {
      place = std::min(page_.find(quote, place + 1), page_.size() - 1) + 1;
      return;
    }
    while (place < page_.size() && !isSpace(page_[place]) && page_[place] != '>')
      ++place;
  }

  void startTag(bool isSelfClosing) {
    if (name_ == "template") {
      ++templateDepth_;
      return;
    }
    const bool isForeign = foreignDepth_ > 0 && integrationDepth_ == 0;
    if (!(isForeign && isSelfClosing)) {
      if (isOneOf(name_, unreadContent))
        return skipContent();
      if (isOneOf(name_, plainContent) || name_ == "plaintext")
        return readPlainContent();
    }
    if (templateDepth_ > 0)
      return;
    if (name_ == "svg" || name_ == "math") {
      foreignDepth_ += isSelfClosing ? 0 : 1;
      return separate();
    }
    const SeenTag tag = open_.tag(name_, markup_.size());
    if (isForeign) {
      if (!tag.has(leavesForeign)) {
        integrationDepth_ += !isSelfClosing && isOneOf(name_, integrationPoints) ? 1 : 0;
        return separate();
      }
      foreignDepth_ = 0;
    }
    if (isOneOf(name_, unusedTags) || (name_ == "html" && hasHtml_) || (name_ == "body" && hasBody_) ||
        name_ == "head") {
      if (name_ != "head" || hasHead_ || hasBody_)
        return separate();
    }
    if (name_ == "html" || name_ == "head" || name_ == "body") {
      (name_ == "html" ? hasHtml_ : name_ == "head" ? hasHead_ : hasBody_) = true;
      out_ += markup_;
      return;
    }
    if (open_.isInSelect() && !startInSelect(tag))
      return separate();
    if (!open_.hasRoomFor(tag)) {
      open_.leaveOut(tag);
      return separate();
    }
    if (!tag.has(isSpecial) || tag.has(resumesFormatting))
      out_ += open_.endExpensiveFormatting();
    open_.start(tag);
    appendMarkup(tag);
  }

  // Copies of a formatting element repeat its attributes, so they may not be long. Those of links count, though.
  void appendMarkup(const SeenTag& tag) {
    constexpr std::size_t longest = 1024;
    if (tag.has(isFormatting) && tag.id != tagA && markup_.size() > longest)
      out_.append("<").append(name_).append(">");
    else
      out_ += markup_;
  }

  // Inside `select` only options count; what else can stand there ends it. False when the tag is to be left out.
  bool startInSelect(const SeenTag& tag) {
    if (tag.id == tagOption || tag.id == tagOptgroup)
      return true;
    if (!tag.has(isRow) && tag.id != tagInput && tag.id != tagKeygen && tag.id != tagSelect)
      return false;
    endSelect();
    return tag.id != tagSelect;
  }

  void endSelect() {
    open_.end(open_.tag("select", 0));
    out_ += "</select>";
  }

  void endTag() {
    if (name_ == "template") {
      templateDepth_ -= templateDepth_ > 0 ? 1 : 0;
      return;
    }
    if (templateDepth_ > 0)
      return;
    if (foreignDepth_ > 0) {
      if (name_ == "svg" || name_ == "math") {
        --foreignDepth_;
        integrationDepth_ = 0;
        return separate();
      }
      if (integrationDepth_ > 0 && isOneOf(name_, integrationPoints)) {
        --integrationDepth_;
        return separate();
      }
    }
    // The ends of these say nothing: what comes behind them belongs to the body all the same.
    if (name_ == "html" || name_ == "body" || isOneOf(name_, unusedTags))
      return separate();
    const SeenTag tag = open_.tag(name_, markup_.size());
    if (open_.isInSelect() && tag.has(isRow))
      endSelect();
    const bool isLost = open_.isInSelect() && tag.id != tagOption && tag.id != tagOptgroup && tag.id != tagSelect;
    if (isLost || open_.closesLeftOut(tag))
      return separate();
    open_.end(tag);
    out_.append("</").append(name_).append(">");
  }

  // To the end tag of the element that was just begun; yields what stands before it.
  std::string_view takeContent() {
    const std::size_t begin = place_;
    std::size_t end = place_;
    while ((end = page_.find("</", end)) != std::string_view::npos) {
      const char behind = at(end + 2 + name_.size());
      if (platform::equalIgnoringCase(page_.substr(end + 2, name_.size()), name_) &&
          (isSpace(behind) || behind == '/' || behind == '>'))
        break;
      end += 2;
    }
    end = std::min(end, page_.size());
    const std::size_t close = page_.find('>', end);
    place_ = close == std::string_view::npos ? page_.size() : close + 1;
    return page_.substr(begin, end - begin);
  }

  void skipContent() {
    separate();
    if (name_ != "script") {
      takeContent();
      return;
    }
    // A script that writes a script inside a comment goes on behind the inner one's end: the standard's "script data
    // double escaped" states.
    bool isInner = false;
    do {
      const std::string_view content = takeContent();
      const std::size_t comment = content.rfind("<!--");
      const bool isOpen = comment != std::string_view::npos && content.find("-->", comment) == std::string_view::npos;
      isInner =
          !isInner && isOpen && platform::lowercased(content.substr(comment)).find("<script") != std::string::npos;
    } while (isInner && place_ < page_.size());
  }

  void readPlainContent() {
    const bool isTag = templateDepth_ == 0 && foreignDepth_ == 0 && !open_.isInSelect() && name_ != "plaintext";
    const bool isKept = isTag && (name_ == "title" || name_ == "textarea");
    const Reference reference = name_ == "xmp" || name_ == "plaintext" ? Reference::text : Reference::reference;
    std::string_view content;
    if (name_ == "plaintext") {
      content = page_.substr(place_);
      place_ = page_.size();
    } else {
      content = takeContent();
    }
    if (templateDepth_ > 0)
      return;
    const std::string_view element = isKept ? std::string_view(name_) : "pre";
    const SeenTag tag = open_.tag(element, 0);
    const bool isWritten = isKept || (reference == Reference::text && !open_.isInSelect() && open_.hasRoomFor(tag));
    if (isWritten && !isKept)
      open_.start(tag);
    if (isWritten)
      out_.append("<").append(element).append(">");
    else
      separate();
    appendPlain(content, reference);
    if (isWritten)
      out_.append("</").append(element).append(">");
    if (isWritten && !isKept)
      open_.end(tag);
  }

  void appendText(std::string_view text) {
    if (text.empty() || templateDepth_ > 0)
      return;
    out_ += open_.endExpensiveFormatting();
    open_.text();
    out_ += text;
  }

  enum class Reference { text, reference }; // what "&" begins

  void appendPlain(std::string_view text, Reference reference) {
    if (text.empty() || templateDepth_ > 0)
      return;
    out_ += open_.endExpensiveFormatting();
    open_.text();
    for (const char character : text) {
      if (character == '<')
        out_ += "&lt;";
      else if (character == '&' && reference == Reference::text)
        out_ += "&amp;";
      else
        out_ += character;
    }
  }

  // Something was left out here: an unfinished character reference must not go on behind it.
  void separate() {
    std::size_t place = out_.size();
    while (place > 0 &&
           (isLetter(out_[place - 1]) || (out_[place - 1] >= '0' && out_[place - 1] <= '9') || out_[place - 1] == '#'))
      if (out_.size() - --place > 40) // longer than any reference
        return;
    if (place > 0 && out_[place - 1] == '&')
      out_ += "<!---->";
  }

  std::string_view page_;
  std::size_t place_ = 0;
  std::string out_;
  OpenElements open_;
  std::string name_;   // of the tag that is being read
  std::string markup_; // its start tag, as it is to be written
  std::size_t tagsAndAttributes_ = 0;
  int foreignDepth_ = 0;
  int integrationDepth_ = 0;
  int templateDepth_ = 0;
  bool hasHtml_ = false;
  bool hasHead_ = false;
  bool hasBody_ = false;
};

} // namespace

std::string boundedMarkup(std::string_view page) {
  return BoundedCopy(page).run();
}

} // namespace tabwright::html
