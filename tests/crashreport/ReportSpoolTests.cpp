#include "crashreport/ReportSpool.h"
#include "platform/FileFailure.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tabwright::crashreport {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testsupport::ScratchFolder;

class ReportSpoolTest : public ::testing::Test {
protected:
  [[nodiscard]] std::vector<std::string> contents(const ReportSpool& spool) const {
    std::vector<std::string> texts;
    for (const std::string& name : spool.names(ReportSpool::envelopeEnding))
      texts.push_back(spool.read(name).value_or("unreadable"));
    return texts;
  }
  [[nodiscard]] std::vector<std::string> everything() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
      names.push_back(entry.path().filename());
    return names;
  }
  [[nodiscard]] int refusal() const {
    try {
      const ReportSpool spool(folder);
      return 0;
    } catch (const platform::FileFailure& failure) {
      return failure.errorNumber();
    }
  }

  ScratchFolder scratch;
  fs::path folder = scratch / "state/reports";
};

TEST_F(ReportSpoolTest, KeepsReportsInOrderForTheNextProcess) {
  ReportSpool(folder).add("one");
  ReportSpool spool(folder);
  EXPECT_TRUE(spool.hasReports());
  spool.add("two");
  spool.add("three");
  EXPECT_THAT(contents(spool), ElementsAre("one", "two", "three"));
  spool.remove(spool.names(ReportSpool::envelopeEnding).front());
  EXPECT_THAT(contents(ReportSpool(folder)), ElementsAre("two", "three"));
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(folder / spool.names(ReportSpool::envelopeEnding).front()).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(ReportSpoolTest, DropsTheOldestBeyondItsBounds) {
  ReportSpool spool(folder);
  for (std::size_t report = 0; report < ReportSpool::mostFiles + 5; ++report)
    spool.add(std::to_string(report));
  EXPECT_THAT(contents(spool), SizeIs(ReportSpool::mostFiles));
  EXPECT_EQ(contents(spool).front(), "5");

  const std::string large(ReportSpool::longestReport, 'x');
  constexpr std::size_t fitting = ReportSpool::mostBytes / ReportSpool::longestReport;
  for (std::size_t report = 0; report < fitting + 2; ++report)
    spool.add(large);
  EXPECT_THAT(everything(), SizeIs(fitting));
  EXPECT_THROW(spool.add(large + "x"), platform::FileFailure);
  EXPECT_THAT(everything(), SizeIs(fitting));
}

TEST_F(ReportSpoolTest, HasEachReportWholeOrNotAtAllWhenItsWriterIsKilled) {
  const std::string text(100'000, 'r');
  for (int round = 0; round < 20; ++round) {
    const pid_t writer = ::fork();
    if (writer == 0) {
      ReportSpool spool(folder);
      for (;;)
        spool.add(text);
    }
    ::usleep(static_cast<useconds_t>(3000 + round * 700)); // somewhere in the middle of its work
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    const ReportSpool spool(folder);
    for (const std::string& content : contents(spool))
      ASSERT_EQ(content, text);
    ASSERT_THAT(everything(), SizeIs(spool.names(ReportSpool::envelopeEnding).size())); // nothing unfinished is left
  }
}

TEST_F(ReportSpoolTest, LeavesAloneWhatIsNotItsOwn) {
  ReportSpool spool(folder);
  spool.add("own");
  const std::string name = ReportSpool::newName(ReportSpool::envelopeEnding);
  ScratchFolder::write(folder / "notes.envelope", "not a report's name");
  ScratchFolder::write(folder / ("x" + name.substr(1)), "nor is this");
  ScratchFolder::write(scratch / "secret", "secret");
  fs::create_symlink(scratch / "secret", folder / ReportSpool::newName(ReportSpool::envelopeEnding));
  fs::create_directory(folder / ReportSpool::newName(ReportSpool::envelopeEnding));
  const std::string pipe = ReportSpool::newName(ReportSpool::envelopeEnding);
  ASSERT_EQ(::mkfifo((folder / pipe).c_str(), 0600), 0);
  const std::string endless = ReportSpool::newName(ReportSpool::envelopeEnding);
  ScratchFolder::write(folder / endless, "");
  fs::resize_file(folder / endless, ReportSpool::longestReport + 1);
  if (::geteuid() == 0) {
    const std::string foreign = ReportSpool::newName(ReportSpool::envelopeEnding);
    ScratchFolder::write(folder / foreign, "somebody else's");
    ASSERT_EQ(::chown((folder / foreign).c_str(), 65534, 65534), 0);
    EXPECT_FALSE(spool.read(foreign));
  }
  const std::size_t before = everything().size();
  EXPECT_THAT(contents(ReportSpool(folder)), ElementsAre("own"));
  EXPECT_FALSE(spool.read(pipe)); // without waiting for a writer
  EXPECT_FALSE(spool.read(endless));
  EXPECT_THAT(everything(), SizeIs(before));
}

TEST_F(ReportSpoolTest, RefusesAFolderThatOthersHaveAHandIn) {
  fs::create_directories(scratch / "elsewhere");
  fs::create_directories(folder.parent_path());
  fs::create_directory_symlink(scratch / "elsewhere", folder);
  EXPECT_EQ(refusal(), ENOTDIR);
  EXPECT_THAT(fs::directory_iterator(scratch / "elsewhere"), ::testing::Eq(fs::directory_iterator()));
  fs::remove(folder);
  fs::create_directory(folder);
  fs::permissions(folder, fs::perms::all);
  EXPECT_EQ(refusal(), EPERM);
  fs::permissions(folder, fs::perms::owner_all | fs::perms::group_read | fs::perms::others_read);
  EXPECT_EQ(refusal(), 0);
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all); // readable to others is mended
  fs::remove(folder);
  ScratchFolder::write(folder, "a file");
  EXPECT_EQ(refusal(), ENOTDIR);
}

} // namespace
} // namespace tabwright::crashreport
