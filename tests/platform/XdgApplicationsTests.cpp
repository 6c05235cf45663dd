#include "platform/DesktopFault.h"
#include "platform/linux/XdgApplications.h"
#include "support/FailureText.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <poll.h>
#include <string>

namespace tabwright::platform {

namespace {

namespace fs = std::filesystem;

/// Two folders of entries, of which the first hides the second.
class XdgApplicationsTest : public testing::Test {
protected:
  XdgApplicationsTest() {
    fs::create_directories(folder / "home");
    fs::create_directories(folder / "share/kde");
  }

  void add(const std::string& file, const std::string& lines) {
    std::ofstream(folder / file) << "[Desktop Entry]\nType=Application\n" << lines << "\n";
  }
  std::string idOf(const ClientWindow& window) {
    const auto found = applications.applicationOf(window);
    return found ? found->id : "none";
  }
  static ClientWindow windowOfClass(const std::string& instance, const std::string& windowClass) {
    ClientWindow window;
    window.instance = instance;
    window.windowClass = windowClass;
    return window;
  }

  testsupport::ScratchFolder scratch;
  const fs::path folder = scratch.path();
  XdgApplications applications{{"/usr/bin:/bin", {folder / "home", folder / "share"}}};
};

TEST_F(XdgApplicationsTest, AreFoundByIdWhateverItsCase) {
  add("share/org.Editor.desktop", "Name=Editor\nExec=editor");
  add("share/kde/viewer.desktop", "Name=Viewer\nExec=viewer");
  add("share/gone.desktop", "Name=Gone\nExec=gone\nTryExec=/nowhere/gone");
  add("share/hidden.desktop", "Name=Hidden\nExec=hidden");
  add("home/hidden.desktop", "Name=Hidden\nExec=hidden\nHidden=true");
  EXPECT_EQ(applications.find("org.editor")->id, "org.Editor");
  add("share/com.one.Reader.desktop", "Name=One\nExec=one");
  add("share/com.two.Reader.desktop", "Name=Two\nExec=two");
  EXPECT_EQ(applications.find("editor")->id, "org.Editor");
  EXPECT_FALSE(applications.find("reader")) << "which of two isn't said";
  EXPECT_EQ(applications.find("kde-viewer")->name, "Viewer");
  EXPECT_FALSE(applications.find("gone"));
  EXPECT_FALSE(applications.find("hidden"));
  EXPECT_FALSE(applications.find(""));
}

TEST_F(XdgApplicationsTest, AreReadAnewWhenAFolderHasChanged) {
  EXPECT_FALSE(applications.find("late"));
  fs::last_write_time(folder / "share", fs::file_time_type::min() + std::chrono::hours(1));
  EXPECT_FALSE(applications.find("late"));
  add("share/late.desktop", "Name=Late\nExec=late");
  EXPECT_TRUE(applications.find("late"));
}

TEST_F(XdgApplicationsTest, AreKnownByTheirWindows) {
  add("share/org.editor.desktop", "Name=Editor\nExec=/usr/bin/editor %U");
  add("share/chromium.desktop", "Name=Chromium\nExec=/usr/bin/chromium %U\nStartupWMClass=chromium-browser");
  add("share/designer-qt6.desktop", "Name=Designer\nExec=/usr/lib/qt6/bin/designer");
  ClientWindow window = windowOfClass("x", "X");
  window.applicationID = "org.editor";
  EXPECT_EQ(idOf(window), "org.editor");
  EXPECT_EQ(idOf(windowOfClass("chromium (profile)", "Chromium-browser")), "chromium");
  EXPECT_EQ(idOf(windowOfClass("chromium", "Other")), "chromium") << "by the name of the file";
  EXPECT_EQ(idOf(windowOfClass("", "")), "none");
  window = windowOfClass("other", "Other");
  window.pid = getpid();
  EXPECT_EQ(idOf(window), "none");
  add("share/tests.desktop", "Name=Tests\nExec=" + fs::read_symlink("/proc/self/exe").filename().string());
  EXPECT_EQ(idOf(window), "tests") << "by the program that runs";
}

TEST_F(XdgApplicationsTest, AreStartedOnTheirOwn) {
  const fs::path told = folder / "told";
  add("share/teller.desktop", "Name=Teller\nExec=sh -c \"pwd > " + told.string() + "\"\nPath=/usr");
  applications.start(*applications.find("teller"));
  std::string line;
  for (int attempt = 0; attempt < 500 && line.empty(); ++attempt) {
    poll(nullptr, 0, 10);
    std::ifstream(told) >> line;
  }
  EXPECT_EQ(line, "/usr");
}

TEST_F(XdgApplicationsTest, SayWhyTheyCannotBeStarted) {
  add("share/missing.desktop", "Name=Missing\nExec=/nowhere/missing");
  add("share/top.desktop", "Name=Top\nExec=top\nTerminal=true");
  add("share/damaged.desktop", "Name=Damaged\nExec=a \"b");
  const auto refusal = [&](const InstalledApplication& application) {
    return testsupport::failureText([&] {
      applications.start(application);
      return 0;
    });
  };
  EXPECT_EQ(refusal(*applications.find("missing")),
            "Can’t start Missing: /nowhere/missing: No such file or directory.");
  EXPECT_EQ(refusal(*applications.find("top")), "Can’t start Top: it runs in a terminal.");
  EXPECT_EQ(refusal(*applications.find("damaged")),
            "Can’t start Damaged: its desktop entry has no command that can be read.");
  EXPECT_EQ(refusal({"never", "Never"}), "Can’t start Never: it is no longer installed.");
}

} // namespace

} // namespace tabwright::platform
