#include "platform/FileFailure.h"
#include "platform/linux/PosixFileManager.h"
#include "session/TrustedFolder.h"
#include "support/Environment.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::platform {
namespace {

class PosixFileManagerTest : public testing::Test {
protected:
  static unsigned mode(const std::filesystem::path& path) {
    struct stat facts{};
    EXPECT_EQ(stat(path.c_str(), &facts), 0);
    return facts.st_mode & 0777u;
  }
  template <class Act>
  static int errorOf(Act act) {
    try {
      act();
    } catch (const FileFailure& failure) {
      return failure.errorNumber();
    }
    return 0;
  }

  testsupport::ScratchFolder folder;
  PosixFileManager files;
};

TEST_F(PosixFileManagerTest, WritesANewFileForTheOwnerAloneAndReadsBackNothingElse) {
  const auto file = folder / "a.applescript";
  const std::string text(200'000, 'x');
  EXPECT_EQ(files.kindOfFile(file), std::nullopt);
  const auto written = files.writeNewFileAtomically(file, text);
  ASSERT_TRUE(written);
  EXPECT_EQ(folder.content(file), text);
  EXPECT_EQ(mode(file), 0600u);
  EXPECT_EQ(files.kindOfFile(file), FileKind::other);
  EXPECT_FALSE(files.writeNewFileAtomically(file, "other"));
  EXPECT_EQ(folder.content(file), text);
  files.remove(file);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  std::ofstream(file) << "exchanged";
  EXPECT_EQ(written->content(), text);
}

TEST_F(PosixFileManagerTest, RemovesFilesThatNobodyHolds) {
  const auto held = files.writeNewFileAtomically(folder / "held.lock", "");
  static_cast<void>(files.writeNewFileAtomically(folder / "left.lock", ""));
  for (const char* name : {"held.socket", "left.socket", "other"})
    std::ofstream(folder / name) << "x";
  removeAbandonedFiles(folder.path(), ".lock", ".socket");
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    names.push_back(entry.path().filename());
  EXPECT_THAT(names, testing::UnorderedElementsAre("held.lock", "held.socket", "other"));
}

TEST_F(PosixFileManagerTest, KnowsWhetherThereIsRoom) {
  EXPECT_TRUE(session::hasRoom(folder.path(), 1));
  EXPECT_FALSE(session::hasRoom(folder.path(), UINTMAX_MAX));
  EXPECT_TRUE(session::hasRoom("/proc", 1)); // it has no sizes
}

TEST_F(PosixFileManagerTest, NamesOperationPathAndReasonOfAFailure) {
  const auto missing = folder / "none" / "a";
  EXPECT_EQ(errorOf([&] { static_cast<void>(files.writeNewFileAtomically(missing, "x")); }), ENOENT);
  EXPECT_EQ(errorOf([&] { files.createDirectory(missing); }), ENOENT);
  EXPECT_EQ(errorOf([&] { files.remove(missing); }), ENOENT);
  try {
    files.remove(missing);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.errorDescription(), "Couldn't remove “" + missing.string() + "”: No such file or directory");
    EXPECT_EQ(failure.identity().number, ENOENT);
  }
}

TEST_F(PosixFileManagerTest, MakesAFolderOnce) {
  files.createDirectory(folder / "Temp");
  EXPECT_EQ(mode(folder / "Temp"), 0700u);
  EXPECT_EQ(files.kindOfFile(folder / "Temp"), FileKind::folder);
  EXPECT_NO_THROW(files.createDirectory(folder / "Temp"));
  std::ofstream(folder / "file") << "x";
  EXPECT_EQ(errorOf([&] { files.createDirectory(folder / "file"); }), EEXIST);
}

TEST_F(PosixFileManagerTest, KeepsScriptsWhereNobodyElseCanChangeThem) {
  using std::filesystem::perms;
  const testsupport::Environment environment({{"XDG_DATA_HOME", folder / "data"}, {"XDG_RUNTIME_DIR", folder / "run"}});
  const auto inData = folder / "data/tabwright/scripts";
  EXPECT_EQ(files.applicationScriptsFolder(), inData); // there is no such folder
  EXPECT_EQ(mode(inData), 0700u);
  std::filesystem::create_directory(folder / "run");
  const auto own = folder / "run/tabwright";
  EXPECT_EQ(files.applicationScriptsFolder(), own / "scripts");
  EXPECT_EQ(mode(own / "scripts"), 0700u);
  for (const auto& open : {folder / "run", own, own / "scripts"}) {
    permissions(open, perms::others_write, std::filesystem::perm_options::add);
    EXPECT_EQ(files.applicationScriptsFolder(), inData) << open;
    permissions(open, perms::others_write, std::filesystem::perm_options::remove);
  }
  if (geteuid() == 0) {
    ASSERT_EQ(chown(own.c_str(), 65534, 65534), 0);
    EXPECT_EQ(files.applicationScriptsFolder(), inData);
  }
  rename(own, folder / "elsewhere");
  create_directory_symlink(folder / "elsewhere", own);
  EXPECT_EQ(files.applicationScriptsFolder(), inData);

  permissions(folder / "data/tabwright", perms::group_write, std::filesystem::perm_options::add);
  EXPECT_EQ(errorOf([&] { static_cast<void>(files.applicationScriptsFolder()); }), EPERM);
  std::filesystem::remove_all(folder / "data");
  std::ofstream(folder / "data") << "in the way";
  EXPECT_EQ(errorOf([&] { static_cast<void>(files.applicationScriptsFolder()); }), ENOTDIR);
}

} // namespace
} // namespace tabwright::platform
