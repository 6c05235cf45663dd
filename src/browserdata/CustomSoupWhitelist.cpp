// The usual list first, then the elements of newer HTML that hold text for readers.
#include "browserdata/CustomSoupWhitelist.h"

namespace tabwright::browserdata {

namespace {

// The usual allow list for texts with images.
html::AllowList base() {
  html::AllowList list;
  list.addTags({"a",     "b",     "blockquote", "br",    "caption", "cite",  "code", "col",    "colgroup", "dd",  "div",
                "dl",    "dt",    "em",         "h1",    "h2",      "h3",    "h4",   "h5",     "h6",       "i",   "img",
                "li",    "ol",    "p",          "pre",   "q",       "small", "span", "strike", "strong",   "sub", "sup",
                "table", "tbody", "td",         "tfoot", "th",      "thead", "tr",   "u",      "ul"});
  list.addAttributes("a", {"href", "title"})
      .addAttributes("blockquote", {"cite"})
      .addAttributes("col", {"span", "width"})
      .addAttributes("colgroup", {"span", "width"})
      .addAttributes("img", {"align", "alt", "height", "src", "title", "width"})
      .addAttributes("ol", {"start", "type"})
      .addAttributes("q", {"cite"})
      .addAttributes("table", {"summary", "width"})
      .addAttributes("td", {"abbr", "axis", "colspan", "rowspan", "width"})
      .addAttributes("th", {"abbr", "axis", "colspan", "rowspan", "scope", "width"})
      .addAttributes("ul", {"type"});
  list.addProtocols("a", "href", {"ftp", "http", "https", "mailto"})
      .addProtocols("blockquote", "cite", {"http", "https"})
      .addProtocols("cite", "cite", {"http", "https"})
      .addProtocols("img", "src", {"http", "https"})
      .addProtocols("q", "cite", {"http", "https"});
  return list;
}

} // namespace

const html::AllowList& CustomSoupWhitelist::list() {
  // Elements that were not in HTML when the usual list was made, and those whose text belongs to the reader.
  static const html::AllowList list =
      base()
          .addTags({"abbr",     "address",    "article", "aside",   "data",   "datalist", "del",    "details",
                    "dfn",      "figcaption", "figure",  "footer",  "header", "hgroup",   "hr",     "ins",
                    "kbd",      "main",       "mark",    "meter",   "nav",    "noscript", "output", "picture",
                    "progress", "s",          "samp",    "section", "source", "summary",  "time",   "var"})
          .addAttributes("abbr", {"title"});
  return list;
}

std::string errorDescription(CustomSoupWhitelist::CustomSoupWhitelistError, const std::string&) {
  return "The list of allowed elements could not be made";
}

platform::FailureIdentity identity(CustomSoupWhitelist::CustomSoupWhitelistError) {
  return {"CustomSoupWhitelistError", "unableToInherit", {}};
}

} // namespace tabwright::browserdata
