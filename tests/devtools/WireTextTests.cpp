#include "devtools/WireText.h"
#include "platform/JSONFailure.h"

#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace tabwright::devtools {

TEST(WireText, HalfSurrogatePairsBecomeReplacementCharacters) {
  struct Case {
    const char* json;
    const char* repaired;
  };
  const Case cases[] = {
      {R"("a\ud83dz")", R"("a\ufffdz")"},         // leading alone
      {R"("\ude00")", R"("\ufffd")"},             // trailing alone
      {R"("\ud83d\ude00")", R"("\ud83d\ude00")"}, // a pair
      {R"("\uD83D\uDE00\uDE00")", R"("\uD83D\uDE00\ufffd")"},
      {R"("\ud83d\ud83d\ude00")", R"("\ufffd\ud83d\ude00")"},
      {R"("\ud83d")", R"("\ufffd")"},   // at the end
      {R"("\\ud83d")", R"("\\ud83d")"}, // an escaped backslash, and no escape
      {R"("\\\ud83d")", R"("\\\ufffd")"},
      {R"("\ud7ff\ue000\u00d8")", R"("\ud7ff\ue000\u00d8")"}, // the neighbours
      {"\"\\ud8", "\"\\ud8"},                                 // cut off
      {"\\", "\\"},
      {"", ""},
  };
  for (const Case& each : cases)
    EXPECT_EQ(withoutLoneSurrogates(each.json), each.repaired) << each.json;
}

TEST(WireText, MessagesAreReadWhateverTheirTextsHold) {
  EXPECT_EQ(parseMessage(R"({"value":"x\ud83d"})").at("value"), "x\uFFFD");
  EXPECT_EQ(parseMessage(R"({"value":"\ud83d\ude00"})").at("value"), "\U0001F600");
  EXPECT_TRUE(parseMessage(std::string(1000, '[') + std::string(1000, ']')).is_array());
}

TEST(WireText, WhatIsNoJsonIsRefused) {
  for (const std::string& text : {std::string(), std::string("{"), std::string("{}x"), std::string("\"\\u12\""),
                                  std::string(100000, '['), std::string("\"\xff\"")})
    EXPECT_THROW((void)parseMessage(text), platform::JSONFailure) << text.substr(0, 20);
}

} // namespace tabwright::devtools
