// A full disk or a folder that can't be written stops nothing that does without it, and is said first where it does.
#include "app/FailureReport.h"
#include "app/HelperFiles.h"
#include "engine/errors/ScriptacularError.h"
#include "platform/FileFailure.h"
#include "support/Environment.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace tabwright::app {
namespace {

TEST(Shortage, HelperFilesLieInTheSessionsFolderWhereTheHomeCannotBeWritten) {
  const testsupport::ScratchFolder folder;
  std::filesystem::create_directory(folder / "run");
  const testsupport::Environment environment(
      {{"XDG_DATA_HOME", "/dev/null/data"}, {"XDG_RUNTIME_DIR", folder / "run"}});
  const std::filesystem::path files = ensureHelperFiles();
  EXPECT_EQ(files.parent_path(), folder / "run/tabwright/helper");
  EXPECT_TRUE(exists(files / "manifest.json"));
}

TEST(Shortage, TheFileThatCouldNotBeWrittenComesFirst) {
  const auto failure = platform::failure(engine::ScriptacularError::unableToWrite)
                           .causedBy(platform::asCause(platform::FileFailure("write", "/run/a", ENOSPC)));
  EXPECT_THAT(
      commandReportOf(failure, ReportForm::sentence).text,
      testing::StartsWith("tabwright: Couldn't write “/run/a”: No space left on device\nTabwright wasn't able"));
}

} // namespace
} // namespace tabwright::app
