// Trees of folders in a scratch folder: what is written, what is refused, and that removal leaves the tree as it was.
#include "ConnectFixture.h"
#include "connect/OwnFolder.h"
#include "support/FailureText.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testsupport::failureName;
using testsupport::failureText;
using testsupport::ScratchFolder;

class Installing : public ConnectFixture {
protected:
  std::vector<fs::path> install() { return installHelper(chromium, parts, record, system); }
  std::vector<fs::path> remove() { return removeHelper(chromium.path, parts, record); }
};

TEST_F(Installing, WritesWhatTheBrowserReadsAndNothingTheSecondTime) {
  EXPECT_THAT(install(), ElementsAre(relayFile, extensionFile));
  EXPECT_EQ(ScratchFolder::content(extensionFile),
            "{\"external_crx\":\"/opt/helper.crx\",\"external_version\":\"1.2.3\"}\n");
  EXPECT_THAT(ScratchFolder::content(relayFile),
              AllOf(HasSubstr("\"name\":\"com.example.relay\""), HasSubstr("\"path\":\"/opt/relay\""),
                    HasSubstr("\"allowed_origins\":[\"chrome-extension://abcdefghijklmnopabcdefghijklmnop/\"]")));
  EXPECT_EQ(fs::status(extensionFile.parent_path()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(helperFilesIn(chromium, parts, system), HelperFiles::present);

  EXPECT_EQ(helperInstalledAt({.facts = chromium.facts, .path = home}, parts, system), std::nullopt);
  const auto installedAt = helperInstalledAt(chromium, parts, system);
  EXPECT_LT(*installedAt, std::chrono::system_clock::now() + std::chrono::minutes(1));
  EXPECT_GT(*installedAt, std::chrono::system_clock::now() - std::chrono::minutes(10));

  const auto before = fs::last_write_time(extensionFile);
  const auto tree = this->tree(home);
  EXPECT_THAT(install(), IsEmpty());
  EXPECT_EQ(fs::last_write_time(extensionFile), before);
  EXPECT_EQ(this->tree(home), tree);
}

TEST_F(Installing, RenewsOnlyTheFileThatIsNotAsItShouldBe) {
  install();
  HelperParts newer = parts;
  newer.version = "1.3.0";
  EXPECT_EQ(helperFilesIn(chromium, newer, system), HelperFiles::other);
  EXPECT_THAT(installHelper(chromium, newer, record, system), ElementsAre(extensionFile));
  fs::remove(relayFile);
  EXPECT_EQ(helperFilesIn(chromium, newer, system), HelperFiles::other);
  EXPECT_THAT(installHelper(chromium, newer, record, system), ElementsAre(relayFile));
}

TEST_F(Installing, LeavesTheTreeAsItWasWhenRemoved) {
  const auto expectUntouched = [this] {
    const auto before = tree(home);
    install();
    EXPECT_THAT(remove(), ElementsAre(extensionFile, relayFile));
    EXPECT_EQ(tree(home), before);
    EXPECT_FALSE(fs::exists(scratch / "state/connected.json"));
    EXPECT_THAT(remove(), IsEmpty());
  };
  expectUntouched();
  // The browser's own folder, empty as it may be, is not ours to remove.
  fs::create_directory(relayFile.parent_path());
  expectUntouched();
  ScratchFolder::write(relayFile.parent_path() / "org.other.json", "{}");
  ScratchFolder::write(extensionFile.parent_path() / "other.json", "{}");
  expectUntouched();
  // A browser that was never started has no folder yet.
  fs::remove_all(home / ".config");
  expectUntouched();
}

TEST_F(Installing, KeepsFoldersThatOthersHaveUsedMeanwhile) {
  install();
  ScratchFolder::write(extensionFile.parent_path() / "other.json", "{}");
  ScratchFolder::write(fs::path(relayFile) += ".draft-4711", "half");
  remove();
  EXPECT_THAT(tree(chromium.path),
              testing::UnorderedElementsAre(testing::Pair("External Extensions", "/"),
                                            testing::Pair("External Extensions/other.json", "{}")));
}

TEST_F(Installing, WritesThroughNoLink) {
  const fs::path elsewhere = scratch / "elsewhere";
  fs::create_directory(elsewhere);
  fs::create_symlink(elsewhere, extensionFile.parent_path());
  EXPECT_EQ(failureText([&] { return install(); }),
            "“" + extensionFile.parent_path().string() +
                "” is a symbolic link, and nothing is written through one. Put a folder in its place, or take it away, "
                "and run the command again.");
  EXPECT_THAT(tree(elsewhere), IsEmpty());
  // What was written before the refusal is removed all the same.
  EXPECT_THAT(remove(), ElementsAre(relayFile));
  fs::remove(extensionFile.parent_path());

  // A link in a file's place is replaced; what it leads to stays as it is.
  ScratchFolder::write(elsewhere / "precious", "precious");
  fs::create_directory(extensionFile.parent_path());
  fs::create_symlink(elsewhere / "precious", extensionFile);
  install();
  EXPECT_FALSE(fs::is_symlink(extensionFile));
  EXPECT_EQ(ScratchFolder::content(elsewhere / "precious"), "precious");
}

TEST_F(Installing, FollowsTheUsersOwnLinkToTheBrowsersFolder) {
  fs::rename(chromium.path, scratch / "disk");
  fs::create_directory_symlink(scratch / "disk", chromium.path);
  install();
  EXPECT_TRUE(fs::exists(scratch / "disk/External Extensions"));
  remove();
  EXPECT_THAT(tree(scratch / "disk"), IsEmpty());
}

TEST_F(Installing, RefusesWhatIsNoFolderAndOthersFolders) {
  ScratchFolder::write(relayFile.parent_path(), "a file");
  EXPECT_EQ(failureName([&] { return install(); }), "ConnectFault.noFolder");
  EXPECT_EQ(ScratchFolder::content(relayFile.parent_path()), "a file");
  fs::remove(relayFile.parent_path());
  fs::remove_all(chromium.path);
  ScratchFolder::write(chromium.path, "a file");
  EXPECT_EQ(failureName([&] { return install(); }), "ConnectFault.noFolder");

  if (::geteuid() == 0) {
    fs::remove(chromium.path);
    fs::create_directory(chromium.path);
    if (::chown(chromium.path.c_str(), 1234, 1234) != 0)
      GTEST_SKIP() << "no other users here";
    EXPECT_THAT(failureText([&] { return install(); }), HasSubstr("belongs to another user"));
  } else {
    EXPECT_EQ(failureName([&] { return OwnFolder::open("/"); }), "ConnectFault.foreign");
  }
}

TEST_F(Installing, SaysWhatTheSystemRefusedAndLeavesTheFileAsItWas) {
  install();
  const auto before = tree(home);
  HelperParts newer = parts;
  newer.version = "1.3.0";
  // As on a full disk: nothing more is written, but in the state's file either, so that one is whole already.
  const OwnFolder folder = OwnFolder::open(extensionFile.parent_path());
  rlimit former{};
  ::getrlimit(RLIMIT_FSIZE, &former);
  const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &none);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const std::string text = failureText([&] { return folder.write(extensionFile.filename(), "new"); });
  const std::string ofInstall = failureName([&] { return installHelper(chromium, newer, record, system); });
  ::setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(text,
            "Couldn't write “" + extensionFile.string() + "”: File too large. Mend that, and run the command again.");
  EXPECT_EQ(ofInstall, "ConnectFault.unwritable");
  EXPECT_EQ(tree(home), before);
}

TEST_F(Installing, RefusesBrowsersInASandbox) {
  UserDataDirectory directory = chromium;
  directory.sandbox = Sandbox::flatpak;
  EXPECT_THAT(failureText([&] { return installHelper(directory, parts, record, system); }),
              StartsWith("Chromium from Flatpak can’t be connected: its sandbox"));
  directory.sandbox = Sandbox::snap;
  EXPECT_THAT(failureText([&] { return installHelper(directory, parts, record, system); }),
              StartsWith("Chromium from Snap can’t be connected"));
  EXPECT_THAT(tree(chromium.path), IsEmpty());
}

TEST_F(Installing, WritesNothingWhereTheHelperIsThereForAllUsers) {
  install();
  const std::string extension = ScratchFolder::content(extensionFile);
  const std::string relay = ScratchFolder::content(relayFile);
  remove();
  ScratchFolder::write(system / "usr/share/chromium/extensions" / extensionFile.filename(), extension);
  EXPECT_EQ(helperFilesIn(chromium, parts, system), HelperFiles::absent); // without its relay
  ScratchFolder::write(system / "etc/chromium/native-messaging-hosts" / relayFile.filename(), relay);
  EXPECT_EQ(helperFilesIn(chromium, parts, system), HelperFiles::forAllUsers);
  EXPECT_TRUE(helperInstalledAt(chromium, parts, system).has_value());
  EXPECT_THAT(install(), IsEmpty());
  EXPECT_THAT(tree(chromium.path), IsEmpty());

  // An administrator's of another version doesn't keep a user from this one.
  HelperParts newer = parts;
  newer.version = "1.3.0";
  EXPECT_THAT(installHelper(chromium, newer, record, system), ElementsAre(relayFile, extensionFile));
}

TEST_F(Installing, TheRecordIsKeptAndADamagedOneIsLeftAlone) {
  const fs::path file = scratch / "other/connected.json";
  {
    ConnectRecord first(file);
    first.note("com.google.chrome", "/a", {"/a/x"});
    first.note("com.google.chrome", "/b", {});
    first.note("com.google.chrome", "/a", {"/a/x", "/a/y"});
  }
  {
    ConnectRecord second(file);
    ASSERT_EQ(second.entries().size(), 2u);
    EXPECT_EQ(second.entries()[0].browser, "com.google.chrome");
    EXPECT_THAT(second.entries()[0].made, ElementsAre("/a/x", "/a/y"));
    second.forget("/a");
    EXPECT_EQ(second.entries().front().directory, "/b");
  }
  for (const char* damaged : {"[{\"browser\":\"b\"}]", "{}", "[", "[1]"}) {
    ScratchFolder::write(file, damaged);
    EXPECT_THAT(failureText([&] { return ConnectRecord(file).entries().size(); }),
                StartsWith("The list of connected browsers can’t be read: " + file.string() + ": "));
    EXPECT_EQ(ScratchFolder::content(file), damaged);
  }
}

} // namespace
} // namespace tabwright::connect
