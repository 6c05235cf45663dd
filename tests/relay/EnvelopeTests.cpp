// What passes between a client and the helper is what was sent, however its bytes are cut.
#include "RelayEnds.h"
#include "relay/Envelope.h"

namespace tabwright::relay {
namespace {

using testsupport::framed;
using testsupport::joined;
using testsupport::MiB;

std::string repeated(std::string_view text, std::size_t size) {
  std::string result;
  while (result.size() < size)
    result += text;
  return result;
}

/// The contents of the frames that come of a client's bytes, handed over `step` at a time.
std::vector<std::string> piecesOf(std::string_view bytes, std::size_t step) {
  MessagePieces pieces(7);
  std::string frames;
  for (std::size_t at = 0; at < bytes.size(); at += step)
    pieces.feed(bytes.substr(at, step), frames);
  std::vector<std::string> contents;
  FrameReader reader;
  reader.feed(frames, [&](std::string content) { contents.push_back(std::move(content)); });
  EXPECT_FALSE(reader.isWithinFrame() || pieces.isWithinFrame());
  return contents;
}

TEST(MessagePieces, AreCutBetweenCharactersAndEscapesHoweverTheyCome) {
  // Characters of one to four bytes, and escapes of two and six, so that each kind meets each kind of cut.
  for (const std::string_view text : {"x", "é", "€", "😀", "\"", "\\", "\x01", "a\"é\n€\\😀\x1f/"}) {
    const std::string message = repeated(text, 300);
    for (const std::size_t step : {1, 2, 3, 4, 5, 7, 64, 1000})
      EXPECT_EQ(joined(piecesOf(framed(message), step)), message) << text << " by " << step;
  }
}

TEST(MessagePieces, StayWithinWhatTheBrowserTakes) {
  for (const std::string_view text : {"x", "€", "😀", "\"", "\x01"}) {
    for (const std::size_t size : {MiB - 1, MiB, MiB + 1, 3 * MiB}) {
      std::string message = repeated(text, size);
      EXPECT_EQ(joined(piecesOf(framed(message), message.size() + headSize)), message) << text << ' ' << size;
    }
  }
}

TEST(MessagePieces, KeepMessagesApart) {
  const auto pieces = piecesOf(framed("") + framed("{}") + framed(""), 1);
  const std::vector<std::string> wanted{
      R"({"client":7,"text":"","more":false})", R"({"client":7,"text":"{","more":true})",
      R"({"client":7,"text":"}","more":false})", R"({"client":7,"text":"","more":false})"};
  EXPECT_EQ(pieces, wanted);
}

TEST(MessagePieces, RefuseWhatIsNotUTF8OrTooLong) {
  for (const std::string_view text : {"\xff", "a\x80", "\xc3", "x\xe2\x82", "\xe2\x82y", "\xc0\xaf", "\xed\xa0\x80",
                                      "\xf4\x90\x80\x80", "\xf0\x9f\x98"}) {
    for (const std::size_t step : {1, 2, 100})
      EXPECT_THROW(piecesOf(framed(text), step), Malformed) << text;
  }
  std::string frames;
  const auto tooLong = frameHead(longestFrame + 1);
  EXPECT_THROW(MessagePieces(1).feed({tooLong.data(), tooLong.size()}, frames), Malformed);
  const auto longest = frameHead(longestFrame);
  EXPECT_NO_THROW(MessagePieces(1).feed({longest.data(), longest.size()}, frames));
}

TEST(Envelope, IsReadAsFarAsTheMessage) {
  const std::string_view text = R"({"client":9007199254740991,"message":{"id":1,"value":"}"}})";
  const Addressed addressed = readEnvelope(text);
  EXPECT_EQ(addressed.client, 9007199254740991u);
  EXPECT_EQ(text.substr(addressed.begin, addressed.end - addressed.begin), R"({"id":1,"value":"}"})");
  EXPECT_EQ(readEnvelope(R"({"client":0,"message":1})").client, everyone);
}

TEST(Envelope, IsRubbishInAnyOtherForm) {
  for (const std::string_view text :
       {"", "{}", R"({"client":)", R"({"client":1})", R"({"client":,"message":1})", R"({"client":1,"message":})",
        R"({"client":1,"message":1)", R"({"client":01,"message":1})", R"({"client":-1,"message":1})",
        R"({"client":+1,"message":1})", R"({"client":1.0,"message":1})", R"({"client":9007199254740992,"message":1})",
        R"({"client":99999999999999999999,"message":1})", R"({"client": 1,"message":1})", R"({"message":1,"client":1})",
        R"({"client":"1","message":1})", R"( {"client":1,"message":1})"})
    EXPECT_THROW(static_cast<void>(readEnvelope(text)), Malformed) << text;
}

} // namespace
} // namespace tabwright::relay
