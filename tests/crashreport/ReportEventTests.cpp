#include "crashreport/CrashRecord.h"
#include "crashreport/ReportEvent.h"
#include "platform/FileFailure.h"
#include "platform/JSONText.h"

#include <boost/json/value.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>

namespace tabwright::crashreport {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const ProgramFacts program{.releaseName = "0.1.0 (1)", .dist = "1", .environment = "Beta"};

constexpr const char* head =
    R"+({"release":"0.1.0 (1)","dist":"1","environment":"Beta","modules":[)+"
    R"({"name":"tabwright-host","address":4096,"size":8192,"buildID":"0123456789abcdef0123456789abcdef01234567"},)"
    R"({"name":"libunused.so","address":65536,"size":4096,"buildID":""}]})"
    "\n";
const std::string crash = std::string(head) + "crash 11 1 1790000000\n"
                                              "frame c 1010\nframe s 2000\nframe f 1fff\nframe f 626172626f6f\n";

TEST(ReportEventTest, IsAnEnvelopeToTheByte) {
  ReportEvent event = ReportEvent::of("Launch 0.1.0", program);
  event.id = "00112233445546778899aabbccddeeff";
  event.seconds = 1790000000;
  EXPECT_EQ(envelopeOf(event),
            R"({"event_id":"00112233445546778899aabbccddeeff"})"
            "\n"
            R"({"type":"event","content_type":"application/json","length":198})"
            "\n"
            R"({"event_id":"00112233445546778899aabbccddeeff","timestamp":1790000000,"platform":"native",)"
            R"+("level":"info","release":"0.1.0 (1)","dist":"1","environment":"Beta",)+"
            R"("message":{"formatted":"Launch 0.1.0"}})"
            "\n");
}

TEST(ReportEventTest, TellsOfACrashWhereItHappened) {
  const auto record = CrashRecord::parse(crash);
  ASSERT_TRUE(record);
  ReportEvent event = ReportEvent::of(*record);
  const std::string envelope = envelopeOf(event);
  const boost::json::value payload = platform::parseJSON(envelope.substr(envelope.find("\n{\"event_id") + 1));
  EXPECT_EQ(payload.at("level"), "fatal");
  EXPECT_EQ(payload.at("timestamp"), 1790000000);
  EXPECT_EQ(payload.at("exception"), platform::parseJSON(R"({"values":[{"type":"SIGSEGV","value":"code 1",
    "mechanism":{"type":"signalhandler","synthetic":true,"handled":false,
                 "meta":{"signal":{"number":11,"code":1,"name":"SIGSEGV"}}},
    "stacktrace":{"frames":[{"instruction_addr":"0x1fff","trust":"fp"},{"instruction_addr":"0x2000","trust":"scan"},
                            {"instruction_addr":"0x1010","trust":"context"}]}}]})"));
  EXPECT_EQ(payload.at("debug_meta"), platform::parseJSON(R"({"images":[
    {"type":"elf","image_addr":"0x1000","image_size":8192,"code_file":"tabwright-host",
     "code_id":"0123456789abcdef0123456789abcdef01234567","debug_id":"67452301-ab89-efcd-0123-456789abcdef"}]})"));
}

TEST(ReportEventTest, ReadsWhatIsLeftOfADamagedRecord) {
  for (std::size_t length = 0; length <= crash.size(); ++length) {
    const auto record = CrashRecord::parse(std::string_view(crash).substr(0, length));
    EXPECT_EQ(record.has_value(), length > crash.find("1790000000"));
  }
  for (const std::string& bad : {std::string("{}\ncrash 11 1 5\n"), head + std::string("crash eleven 1 5\n"),
                                 head + std::string("crash 11 1 99999999999999999999999\n"), std::string(9000, '['),
                                 std::string("\0\0\0\n\0", 5), "x" + crash})
    EXPECT_FALSE(CrashRecord::parse(bad));
  EXPECT_EQ(CrashRecord::parse(head + std::string("crash 6 -6 5\nframe c 10\nframe q 11\nframe f 12\n"))->frames.size(),
            1U);
  std::string endless = head + std::string("crash 6 -6 5\n");
  for (int frame = 0; frame < 5000; ++frame)
    endless += "frame f 10\n";
  EXPECT_EQ(CrashRecord::parse(endless)->frames.size(), CrashRecord::mostFrames);
}

TEST(ReportEventTest, ReadsItsOwnHeadAndTheModulesOfThisProcess) {
  const std::vector<Module> modules = loadedModules();
  const auto record = CrashRecord::parse(crashRecordHead(program, modules) + "crash 6 -6 5\n");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->program.releaseName, "0.1.0 (1)");
  ASSERT_EQ(record->modules.size(), modules.size());
  EXPECT_EQ(record->modules.front().name, "tabwright_crashreport_tests");
  EXPECT_EQ(record->modules.front().buildID.size(), 40U);
  EXPECT_TRUE(record->modules.front().contains(reinterpret_cast<std::uintptr_t>(&loadedModules)));
  for (const Module& module : record->modules)
    EXPECT_THAT(module.name, Not(HasSubstr("/")));
}

class TellingError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

class TalkativeFailure final : public platform::Failure {
public:
  [[nodiscard]] std::string errorDescription() const override { return "The password is telling."; } // namespace
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"Talk", "/home/telling/“x”", 7}; }
}; // namespace tabwright::crashreport

TEST(ReportEventTest, TellsErrorsByNameAndNumberAlone) {
  const std::string file =
      envelopeOf(ReportEvent::of(platform::FileFailure("make the folder", "/home/telling", ENOSPC), program));
  EXPECT_THAT(file, HasSubstr(R"+("type":"FileFailure","value":"make the folder (28)")+"));
  EXPECT_THAT(file, Not(HasSubstr("telling")));
  const std::string other = envelopeOf(ReportEvent::of(TellingError("telling"), program));
  EXPECT_THAT(other, HasSubstr("::TellingError\""));
  EXPECT_THAT(other, Not(HasSubstr("telling")));
  const std::string talk = envelopeOf(ReportEvent::of(TalkativeFailure(), program));
  EXPECT_THAT(talk, HasSubstr(R"+("type":"Talk","value":"unnamed (7)")+"));
  EXPECT_THAT(talk, Not(HasSubstr("telling")));
}

} // namespace
} // namespace tabwright::crashreport
