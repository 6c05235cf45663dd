#include "html/Cleaner.h"

#include <gtest/gtest.h>

#include <string>

namespace tabwright::html {
namespace {

std::string markup(const Node& node) {
  if (node.isText())
    return std::string(node.wholeText());
  std::string text = "<" + std::string(node.name());
  for (const Attribute& attribute : node.attributes())
    text += " " + std::string(attribute.name) + "=" + std::string(attribute.value);
  text += ">";
  for (const Node child : node.children())
    text += markup(child);
  return text + "</" + std::string(node.name()) + ">";
}

TEST(Cleaner, LetsThroughWhatIsAllowedAndTheTextOfAllElse) {
  AllowList body;
  body.addTags({"p", "b"}).addAttributes("a", {"href", "title"}).addProtocols("a", "href", {"https", "mailto"});
  AllowList head;
  head.addTags({"title"});
  const Document page = Document::parse(
      "<head><title lang=x>T</title><meta name=a content=b></head><body class=x><p class=y>1<i>2<b onclick=z>3</b></i>"
      "<a href=HTTPS://x title=t id=i>4</a><a href='javascript:x' title=t>5</a><a href=/rel>6</a><a href=' "
      "https:x\n'>7</a>"
      "<form><input value=v>8</form><script>bad</script>");
  EXPECT_EQ(
      markup(Cleaner(head, body).clean(page).root()),
      "<html><head><title>T</title></head><body><p>12<b>3</b><a href=HTTPS://x title=t>4</a><a title=t>5</a><a>6</a>"
      "<a href=https:x>7</a></p>8</body></html>");
  EXPECT_EQ(markup(Cleaner({}, {}).clean(page).root()), "<html><head></head><body>12345678</body></html>")
      << "a text in the head is nothing that is read";
}

TEST(Cleaner, MakesADocumentThatOutlivesThePage) {
  AllowList body;
  body.addAttributes("a", {"href"});
  std::optional<Document> clean;
  {
    const Document page = Document::parse("<a href='some address that is long enough'>a text that is long enough</a>");
    clean = Cleaner({}, body).clean(page);
  }
  EXPECT_EQ(markup(clean->root()), "<html><head></head><body><a href=some address that is long enough>"
                                   "a text that is long enough</a></body></html>");
}

} // namespace
} // namespace tabwright::html
