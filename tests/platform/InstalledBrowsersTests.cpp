#include "platform/FileFailure.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/InstalledBrowsers.h"
#include "platform/linux/ListeningSocket.h"
#include "platform/linux/RunningBrowsers.h"
#include "support/Environment.h"
#include "support/LogCapture.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace tabwright::platform {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;

TEST(DesktopEntry, IsReadByTheRules) {
  const auto entry =
      parseDesktopEntry("# a comment\n\n[Desktop Entry]\r\nType = Application\nName[de]=Netz\nName=Two\\s\\\\\n"
                        "Exec=sh -c \"a=b\" %U\nTryExec=\t/usr/bin/two \nX-Odd=\\q\nHidden=false\n\n"
                        "[Desktop Action New]\nName=Other\nHidden=true\nnonsense");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->type, "Application");
  EXPECT_EQ(entry->name, "Two \\");
  EXPECT_EQ(entry->exec, "sh -c \"a=b\" %U");
  EXPECT_EQ(entry->tryExec, "/usr/bin/two");
  EXPECT_FALSE(entry->isHidden);
  EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=A\nDBusActivatable=true"));
  EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nHidden=true").value().isHidden) << "hides what lies further down";
}

TEST(DesktopEntry, IsNamedInTheUsersLanguage) {
  const std::string text = "[Desktop Entry]\nType=Application\nExec=a\nName=Text\nName[de]=Netz\nName[de_AT]=Netzerl\n"
                           "StartupWMClass=Net\nTerminal=true";
  const auto nameIn = [&](std::vector<std::string> languages) {
    return parseDesktopEntry(text, languages).value().localName;
  };
  EXPECT_EQ(nameIn({"de_AT", "de"}), "Netzerl");
  EXPECT_EQ(nameIn({"de_CH", "de"}), "Netz");
  EXPECT_EQ(nameIn({"fr"}), "Text");
  EXPECT_EQ(parseDesktopEntry(text)->windowClass, "Net");
  EXPECT_TRUE(parseDesktopEntry(text)->isInTerminal);
}

TEST(DesktopEntry, TheCommandLineIsSplitByTheRules) {
  const auto words = [](const char* exec) {
    DesktopEntry entry;
    entry.localName = "The Name";
    entry.exec = exec;
    return commandLineOf(entry).value_or(std::vector<std::string>{"damaged"});
  };
  EXPECT_THAT(words("mousepad %U"), ElementsAre("mousepad"));
  EXPECT_THAT(words(R"(sh -c "echo \"a\" \$b" --name=%c 100%% "" %i)"),
              ElementsAre("sh", "-c", R"(echo "a" $b)", "--name=The Name", "100%", ""));
  EXPECT_THAT(words("a \"b"), ElementsAre("damaged"));
  EXPECT_THAT(words("  "), ElementsAre("damaged"));
}

TEST(DesktopEntry, DamagedOnesAreTold) {
  for (const std::string text :
       {"", "\n", "Type=Application\n", "[Desktop Action]\nType=Application\nName=A\nExec=a",
        "[Desktop Entry\nType=Application\nName=A\nExec=a", "[Desktop Entry]\nName=A\nExec=a",
        "[Desktop Entry]\nType=Application\nExec=a", "[Desktop Entry]\nType=Application\nName=A",
        "[Desktop Entry]\nType=Application\nName=A\nExec=a\nHidden=yes",
        "[Desktop Entry]\nType=Application\nName=A\\x\nExec=a", "[Desktop Entry]\nType=Application\nName=A\nExec=a\\",
        "[Desktop Entry]\nType=Application\nName=A\nExec=a\n=value",
        "\x7f"
        "ELF\x02\x01"})
    EXPECT_FALSE(parseDesktopEntry(text)) << text;
}

/// Folders of programs and of entries that a test fills.
class InstalledBrowsers : public testing::Test {
protected:
  InstalledBrowsers() {
    for (const char* folder : {"bin", "home", "share", "flatpak"})
      fs::create_directories(root / folder);
  }
  void write(const std::string& file, const std::string& text) { root.write(root / file, text); }
  void addEntry(const std::string& file, const std::string& more = "") {
    write(file, "[Desktop Entry]\nType=Application\nName=Any\nExec=any %U\n" + more);
  }
  void addProgram(const std::string& name) {
    write("bin/" + name, "#!/bin/sh\n");
    fs::permissions(root / "bin" / name, fs::perms::owner_all);
  }
  std::vector<std::string> found() const {
    std::vector<std::string> names;
    for (const BrowserFacts* facts : findInstalledBrowsers(places))
      names.emplace_back(facts->shortName);
    return names;
  }

  testsupport::ScratchFolder root;
  InstallationPlaces places{.path = (root / "bin").string(),
                            .applicationFolders = {root / "home", root / "missing", root / "share", root / "flatpak"}};
};

TEST_F(InstalledBrowsers, HaveAProgramOrAnEntry) {
  EXPECT_THAT(found(), IsEmpty());
  addProgram("vivaldi-stable");
  addProgram("safari");
  addEntry("home/org.chromium.Chromium.desktop");
  addEntry("share/google/chrome.desktop"); // the id is google-chrome
  addEntry("flatpak/com.brave.Browser.desktop");
  addEntry("share/com.google.Chrome.beta.desktop");
  addEntry("share/edge/com.microsoft.Edge.desktop"); // and here edge-com.microsoft.Edge
  addEntry("share/safari.desktop");
  EXPECT_THAT(found(), ElementsAre("brave", "chromium", "chrome", "vivaldi"));
}

TEST_F(InstalledBrowsers, AreNotThoseWhoseEntrySaysSo) {
  addEntry("home/chromium.desktop", "Hidden=true\n");
  addEntry("share/chromium.desktop");
  addEntry("share/vivaldi-stable.desktop", "TryExec=vivaldi-missing\n");
  addEntry("flatpak/vivaldi-stable.desktop");
  addEntry("share/brave-browser.desktop", "TryExec=/missing/brave\n");
  write("share/google-chrome.desktop", "[Desktop Entry]\nType=Link\nName=Chrome\nURL=https://example.com/\n");
  addEntry("share/microsoft-edge.desktop", "TryExec=edge-here\n");
  addProgram("edge-here");
  EXPECT_THAT(found(), ElementsAre("edge"));
  addProgram("chromium");
  EXPECT_THAT(found(), ElementsAre("chromium", "edge")) << "a hidden entry takes no program away";
}

TEST_F(InstalledBrowsers, DamagedEntriesAreSkippedAloud) {
  const testsupport::LogCapture log;
  write("home/chromium.desktop", "<html>");
  addEntry("share/chromium.desktop");
  fs::create_directories(root / "share/vivaldi-stable.desktop");
  fs::create_symlink("nowhere", root / "share/brave-browser.desktop");
  write("share/org.editor.desktop", "none of ours");
  EXPECT_THAT(found(), ElementsAre("chromium"));
  EXPECT_THAT(log.lines(),
              ElementsAre("error InstalledBrowsers: Failed to get info dictionary for chromium.desktop",
                          "error InstalledBrowsers: Failed to get info dictionary for vivaldi-stable.desktop"));
}

TEST(InstallationPlaces, AreThoseOfTheEnvironment) {
  {
    const testsupport::Environment bare(
        {{"HOME", "/h"}, {"XDG_DATA_HOME", std::nullopt}, {"XDG_DATA_DIRS", ""}, {"PATH", "/b:/c"}});
    const InstallationPlaces places = InstallationPlaces::ofThisProcess();
    EXPECT_EQ(places.path, "/b:/c");
    EXPECT_THAT(places.applicationFolders,
                ElementsAre("/h/.local/share/applications", "/usr/local/share/applications", "/usr/share/applications",
                            "/h/.local/share/flatpak/exports/share/applications",
                            "/var/lib/flatpak/exports/share/applications", "/var/lib/snapd/desktop/applications"));
  }
  const testsupport::Environment full({{"HOME", "/h"},
                                       {"XDG_DATA_HOME", "/d"},
                                       {"XDG_DATA_DIRS", "relative:/var/lib/flatpak/exports/share/:/usr/share"}});
  EXPECT_THAT(InstallationPlaces::ofThisProcess().applicationFolders,
              ElementsAre("/d/applications", "/var/lib/flatpak/exports/share/applications", "/usr/share/applications",
                          "/d/flatpak/exports/share/applications", "/var/lib/snapd/desktop/applications"));
}

TEST(LookingForBrowsers, TellsShortageOfDescriptorsFromAbsence) {
  rlimit former{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &former), 0);
  const int next = dup(STDIN_FILENO);
  close(next);
  const rlimit full{.rlim_cur = static_cast<rlim_t>(next), .rlim_max = former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &full), 0);
  EXPECT_THROW(static_cast<void>(findInstalledBrowsers(InstallationPlaces::ofThisProcess())), FileFailure);
  EXPECT_THROW(static_cast<void>(RunningBrowsers().findAll()), FileFailure);
  EXPECT_THROW(static_cast<void>(ownerOfListener(1, getpid())), FileFailure);
  setrlimit(RLIMIT_NOFILE, &former);
}

} // namespace
} // namespace tabwright::platform
