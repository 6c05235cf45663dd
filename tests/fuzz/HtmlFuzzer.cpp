#include "browserdata/CustomSoupWhitelist.h"
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageText.h"
#include "browserdata/RichText.h"
#include "html/Cleaner.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// Any bytes are a page. Its tree keeps the bounds, its clean copy holds nothing but what is allowed, and both
/// conversions come to an end.
namespace {

using namespace tabwright;

void require(bool condition) {
  if (!condition)
    std::abort();
}

std::size_t countNodes(const html::Node& node, int depth) {
  require(node.isText() || depth <= html::Document::maximumDepth);
  require(node.attributes().size() <= static_cast<std::size_t>(html::Document::maximumAttributes));
  require(node.name() != "script" && node.name() != "style");
  std::size_t count = 1;
  for (const html::Node child : node.children())
    count += countNodes(child, depth + 1);
  return count;
}

void requireAllowed(const html::Node& node) {
  const html::AllowList& list = browserdata::CustomSoupWhitelist::list();
  require(node.isText() || list.allowsTag(node.name()) || node.name() == "html" || node.name() == "head" ||
          node.name() == "body");
  for (const html::Attribute& attribute : node.attributes())
    require(list.allowedValue(node.name(), attribute.name, attribute.value).has_value());
  for (const html::Node child : node.children())
    requireAllowed(child);
}

/// One group, balanced, of printable ASCII.
void requireWellFormed(const std::string& rtf) {
  require(rtf.starts_with("{\\rtf1"));
  int depth = 0;
  for (std::size_t at = 0; at < rtf.size(); ++at) {
    require(rtf[at] == '\n' || (rtf[at] >= ' ' && rtf[at] < 0x7F));
    if (rtf[at] == '\\')
      ++at;
    else if (rtf[at] == '{')
      ++depth;
    else if (rtf[at] == '}')
      require(--depth >= 0);
    require(depth > 0 || at + 2 >= rtf.size());
  }
  require(depth == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const html::Document page = html::Document::parse(text);
  // 10,000 copies of formatting elements are free, a quarter of one for each byte; beyond, tags make what they say.
  require(countNodes(page.root(), 1) <= 12'000 + 40 * size);
  const html::Document clean = html::Cleaner({}, browserdata::CustomSoupWhitelist::list()).clean(page);
  requireAllowed(clean.root());
  try {
    require(browserdata::HTMLToMarkdown{std::string(text)}.convert().size() <= (std::size_t{16} << 20) + 64 * size);
  } catch (const platform::Failure&) {
  }
  try {
    for (const auto part : {browserdata::PageText::Part::whole, browserdata::PageText::Part::mainContent})
      require(browserdata::PageText{.html = text, .base = "https://x.test/", .part = part}.convert().text.size() <=
              (std::size_t{16} << 20) + 64 * size);
  } catch (const platform::Failure&) {
  }
  requireWellFormed(browserdata::richText(page));
  return 0;
}
