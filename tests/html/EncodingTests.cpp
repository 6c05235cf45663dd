#include "html/Encoding.h"

#include <gtest/gtest.h>

namespace tabwright::html {
namespace {

TEST(Encoding, IsToldByAMarkOrByThePage) {
  EXPECT_EQ(decodedPage("\xEF\xBB\xBF\xC3\xA9"), "\u00e9");
  EXPECT_EQ(decodedPage(std::string("\xFF\xFE\xE9\x00<\x00", 6)), "\u00e9<");
  EXPECT_EQ(decodedPage("<META CharSet = 'ISO-8859-1'>\xE9\x80"), "<META CharSet = 'ISO-8859-1'>\u00e9\u20ac");
  EXPECT_EQ(decodedPage("<meta http-equiv=Content-Type content=\"text/html; charset=koi8-r\">\xC1").back(), '\xB0');
  EXPECT_EQ(decodedPage("<meta charset=shift_jis>\x82\xA0"), "<meta charset=shift_jis>\u3042");
}

TEST(Encoding, IsUTF8OtherwiseAndWhereItIsNotKnown) {
  for (const std::string page : {"", "\xC3\xA9", "<meta charset=utf-8>\xC3\xA9", "<meta charset=utf-16le>\xC3\xA9",
                                 "<meta charset=no-such-thing>\xC3\xA9", "<meta charset>\xC3\xA9",
                                 "<meta charset=", "<meta name=charset content=latin1>\xC3\xA9"})
    EXPECT_EQ(decodedPage(page), page);
  const std::string late = std::string(1024, ' ') + "<meta charset=latin1>\xC3\xA9";
  EXPECT_EQ(decodedPage(late), late);
}

} // namespace
} // namespace tabwright::html
