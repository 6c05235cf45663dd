#pragma once

#include "connect/HelperInstallation.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace tabwright::connect {

/// A home with nothing in it but a browser's folder, and a helper to install.
class ConnectFixture : public ::testing::Test {
protected:
  ConnectFixture() { std::filesystem::create_directories(chromium.path); }

  /// All below a folder: files with their content, links with their targets, folders with a slash.
  [[nodiscard]] static std::map<std::string, std::string> tree(const std::filesystem::path& folder) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
      const std::string name = entry.path().lexically_relative(folder).string();
      if (entry.is_symlink())
        found[name] = "-> " + fs::read_symlink(entry.path()).string();
      else if (entry.is_directory())
        found[name] = "/";
      else
        found[name] = testsupport::ScratchFolder::content(entry.path());
    }
    return found;
  }

  testsupport::ScratchFolder scratch;
  const std::filesystem::path home = scratch / "home";
  const UserDataDirectory chromium{
      .facts = platform::findBrowser("chromium"), .path = home / ".config/chromium", .sandbox = Sandbox::none};
  const HelperParts parts{.identity = "abcdefghijklmnopabcdefghijklmnop",
                          .version = "1.2.3",
                          .relayName = "com.example.relay",
                          .package = "/opt/helper.crx",
                          .unpacked = "/opt/helper",
                          .relay = "/opt/relay"};
  const std::filesystem::path relayFile = chromium.path / "NativeMessagingHosts/com.example.relay.json";
  const std::filesystem::path extensionFile =
      chromium.path / "External Extensions/abcdefghijklmnopabcdefghijklmnop.json";
  const std::filesystem::path system = scratch / "system"; // nothing is there for all users unless a test puts it there
  ConnectRecord record{scratch / "state/connected.json"};
};

} // namespace tabwright::connect
