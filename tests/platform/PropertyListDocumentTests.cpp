#include "platform/linux/PropertyListDocument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace tabwright::platform {
namespace {

using Texts = std::map<std::string, std::string>;

std::string propertyList(const std::string& inside) {
  return "<plist version=\"1.0\">" + inside + "</plist>";
}

std::string nestedArrays(int depth) {
  std::string before, after;
  for (int level = 0; level < depth; ++level) {
    before += "<array>";
    after += "</array>";
  }
  return propertyList("<dict><key>deep</key>" + before + after + "</dict>");
}

std::optional<DefaultsValue> throughXML(const DefaultsValue& value) {
  PropertyListDocument document;
  document.set("k", value);
  const auto again = PropertyListDocument::parse(document.xml());
  return again ? again->find("k") : std::nullopt;
}

TEST(PropertyListDocument, KeepsEveryKindOfValueThroughItsText) {
  const std::vector<DefaultsValue> values{
      std::numeric_limits<std::int64_t>::min(),
      std::numeric_limits<std::int64_t>::max(),
      std::int64_t{-1},
      785734512.1234567,
      -0.1,
      true,
      false,
      std::string(),
      std::string("  <&>\"' ]]> \n\t ä 😀 "),
      Texts{},
      Texts{{"com.apple.safari:17", "a name"}, {"", ""}, {"<key>", "&"}},
  };
  for (std::size_t index = 0; index < values.size(); ++index)
    EXPECT_EQ(throughXML(values[index]), values[index]) << index;
}

TEST(PropertyListDocument, ReplacesWhatXMLCannotHold) {
  EXPECT_EQ(throughXML(std::string("a\x01z\xff") + '\0'), DefaultsValue(std::string("a\uFFFDz\uFFFD\uFFFD")));
  EXPECT_EQ(throughXML(Texts{{"\x02", "\x1f"}}), DefaultsValue(Texts{{"\uFFFD", "\uFFFD"}}));
  EXPECT_THROW(PropertyListDocument().set("k", ForeignValue{}), std::invalid_argument);
}

TEST(PropertyListDocument, ReadsOnlyWholeDictionaries) {
  PropertyListDocument document;
  document.set("a", std::int64_t{1});
  const std::string text = document.xml();
  for (const std::string& damaged :
       {std::string(), std::string("hello"), propertyList(""), propertyList("<array/>"),
        propertyList("<integer>1</integer>"), propertyList("<dict><integer>1</integer></dict>"),
        propertyList("<dict><key>a</key><unknown/></dict>"),
        std::string("bplist00xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"), std::string(2000, '\0'), nestedArrays(1000),
        nestedArrays(50'000)})
    EXPECT_FALSE(PropertyListDocument::parse(damaged)) << damaged.substr(0, 100);
  EXPECT_TRUE(PropertyListDocument::parse(nestedArrays(999)));
  for (std::size_t length = 0; length < text.find("</dict>"); ++length)
    EXPECT_FALSE(PropertyListDocument::parse(text.substr(0, length))) << length;
}

TEST(PropertyListDocument, KeepsWhatItDoesNotUnderstand) {
  const std::string foreign =
      "<key>list</key><array><integer>7</integer></array><key>when</key><date>2026-01-01T00:00:00Z</date>"
      "<key>deep</key><dict><key>number</key><integer>1</integer></dict>";
  auto document = PropertyListDocument::parse(propertyList("<dict>" + foreign + "</dict>"));
  ASSERT_TRUE(document);
  for (const char* name : {"list", "when", "deep"})
    EXPECT_EQ(document->find(name), DefaultsValue(ForeignValue{})) << name;

  PropertyListDocument copy = *document;
  copy.set("mine", true);
  EXPECT_EQ(document->find("mine"), std::nullopt);
  const auto again = PropertyListDocument::parse(copy.xml());
  ASSERT_TRUE(again);
  EXPECT_EQ(again->find("mine"), DefaultsValue(true));
  EXPECT_NE(again->xml().find("<integer>7</integer>"), std::string::npos);
  EXPECT_NE(again->xml().find("2026-01-01T00:00:00Z"), std::string::npos);
}

} // namespace
} // namespace tabwright::platform
