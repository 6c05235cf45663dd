// Which folders browsers have, and what the browsers' own files say of their profiles.
#include "ConnectFixture.h"
#include "connect/BrowserProfiles.h"
#include "connect/HelperParts.h"
#include "support/FailureText.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using platform::findBrowser;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::ScratchFolder;

class UserData : public ConnectFixture {
protected:
  UserDataPlaces places{.home = home,
                        .configuration = home / ".config",
                        .ownProfiles = home / ".local/share/tabwright/browsers",
                        .installed = {findBrowser("chromium"), findBrowser("vivaldi")},
                        .running = {}};

  void run(const char* browser, const fs::path& directory, pid_t inner = 10, uid_t owner = ::geteuid()) {
    places.running.push_back({.facts = findBrowser(browser),
                              .process = 10,
                              .innerProcess = inner,
                              .owner = owner,
                              .profileDirectory = directory});
  }

  /// Each as "browser path sandbox", the path below the scratch folder.
  [[nodiscard]] std::vector<std::string> found(const char* wanted = nullptr) const {
    std::vector<std::string> lines;
    for (const UserDataDirectory& each : findUserDataDirectories(wanted ? findBrowser(wanted) : nullptr, places)) {
      const char* sandbox = each.sandbox == Sandbox::none ? "" : each.sandbox == Sandbox::snap ? " snap" : " flatpak";
      lines.push_back(std::string(each.facts->shortName) + " " + each.path.lexically_relative(scratch.path()).string() +
                      sandbox);
    }
    return lines;
  }
};

TEST_F(UserData, IsFoundWhereBrowsersAreInstalledOrRun) {
  fs::create_directories(home / ".config/google-chrome"); // left by a browser that is no longer installed
  fs::create_directories(home / "snap/chromium/common/chromium");
  EXPECT_THAT(found(), ElementsAre("chromium home/.config/chromium", "chromium home/snap/chromium/common/chromium snap",
                                   "vivaldi home/.config/vivaldi"));
  EXPECT_THAT(found("vivaldi"), ElementsAre("vivaldi home/.config/vivaldi"));
  EXPECT_THAT(found("chrome"), IsEmpty());

  run("chrome", home / ".config/google-chrome");
  run("chromium", home / "work");
  run("chromium", home / ".config/chromium");                         // listed already
  run("chromium", home / ".local/share/tabwright/browsers/chromium"); // ours, driven by its port
  run("chromium", home / "others", 10, ::geteuid() + 1);              // another user's
  run("brave", home / ".var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser");
  run("edge", home / "edge", 2); // has another number inside
  EXPECT_THAT(found(), ElementsAre("brave home/.var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser flatpak",
                                   "chromium home/.config/chromium", "chromium home/snap/chromium/common/chromium snap",
                                   "chromium home/work", "chrome home/.config/google-chrome", "edge home/edge flatpak",
                                   "vivaldi home/.config/vivaldi"));
}

TEST_F(UserData, NamesProfilesAndTellsWhereTheHelperWasRemoved) {
  ScratchFolder::write(chromium.path / "Local State", R"({"profile":{"info_cache":{
      "Profile 1":{"name":"Work"},"Default":{"name":"Ann"},"../out":{"name":"x"},"Profile 2":{}}}})");
  ScratchFolder::write(chromium.path / "Profile 1/Preferences",
                       R"({"extensions":{"external_uninstalls":["other",")" + parts.identity + R"("]}})");
  ScratchFolder::write(chromium.path / "Profile 2/Preferences", "{");
  const std::vector<BrowserProfile> profiles = readProfiles(chromium.path, parts.identity);
  ASSERT_EQ(profiles.size(), 3u);
  EXPECT_EQ(profiles[0].name, "Ann");
  EXPECT_FALSE(profiles[0].isHelperRemoved);
  EXPECT_EQ(profiles[1].directory, "Profile 1");
  EXPECT_EQ(profiles[1].name, "Work");
  EXPECT_TRUE(profiles[1].isHelperRemoved);
  EXPECT_EQ(profiles[2].name, "Profile 2");

  ScratchFolder::write(chromium.path / "Profile 1/Local Extension Settings" / parts.identity / "000003.log",
                       std::string("\0\1profile\"uuid-1\"", 17));
  EXPECT_EQ(findProfileOfHelper(chromium.path, parts.identity, "uuid-1"), "Profile 1");
  EXPECT_EQ(findProfileOfHelper(chromium.path, parts.identity, "uuid-2"), "");
  EXPECT_EQ(findProfileOfHelper(chromium.path, parts.identity, ""), "");

  for (const char* damaged : {"{", "[]", R"({"profile":{"info_cache":[]}})", R"({"profile":7})"}) {
    ScratchFolder::write(chromium.path / "Local State", damaged);
    EXPECT_THAT(readProfiles(chromium.path, parts.identity), IsEmpty()) << damaged;
  }
}

TEST_F(UserData, ThePartsOfTheHelperLieBesideTheProgramOrInItsShare) {
  const fs::path program = scratch / "usr/libexec/tabwright/tabwright-host";
  const auto missing = [&] { return testsupport::failureText([&] { return findHelperParts(program).version; }); };
  EXPECT_THAT(missing(), testing::HasSubstr("“" + (program.parent_path() / "tabwright-relay").string() +
                                            "” is missing. Install Tabwright again"));
  ScratchFolder::write(program.parent_path() / "tabwright-relay", "");
  ScratchFolder::write(scratch / "usr/share/tabwright/tabwright-helper.crx", "");
  EXPECT_THAT(missing(), testing::HasSubstr("share/tabwright/helper”"));
  fs::create_directory(scratch / "usr/share/tabwright/helper");
  EXPECT_EQ(findHelperParts(program).package, scratch / "usr/share/tabwright/tabwright-helper.crx");
  ScratchFolder::write(program.parent_path() / "tabwright-helper.crx", "");
  fs::create_directory(program.parent_path() / "helper");
  EXPECT_EQ(findHelperParts(program).unpacked, program.parent_path() / "helper");
}

} // namespace
} // namespace tabwright::connect
