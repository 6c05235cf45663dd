#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace tabwright::platform {

/// The dictionary that scripts for a browser are written against: its words, classes and commands.
enum class BrowserFamily { chromium, safari };

/// All that is known of one browser, in one row: its identity, and its faces on a Linux desktop. A list that is empty
/// is a face that the browser doesn't have here. A new browser is a row below, with its lists. A constant of literals,
/// so it may be read from any thread and while the program starts.
struct BrowserFacts {
  std::string_view id;        ///< bundle identifier in lower case: the identity used everywhere
  std::string_view name;      ///< shown to users, part of a target's identity
  std::string_view shortName; ///< what a command line calls it: `tabwright browser chromium`
  BrowserFamily family = BrowserFamily::chromium;
  std::span<const std::string_view> desktopEntries;     ///< ids of desktop entries, without ".desktop"
  std::span<const std::string_view> executables;        ///< names looked up on the PATH, best first
  std::span<const std::string_view> programs;           ///< ends of /proc/PID/exe, see `findBrowserOfProgram`
  std::span<const std::string_view> profileDirectories; ///< default user data directories, below the home directory
  std::string_view windowClass;                         ///< class of WM_CLASS, compared ignoring case
  /// Folders from which the browser takes extensions for all users, the usual one first.
  std::span<const std::string_view> extensionFolders;
  std::string_view messagingFolder; ///< of the programs that extensions may start, for all users; empty: not known
};

/// The lists of the rows: a span needs an array that lives as long as the table. Beside a browser's own package stand
/// the names that Flatpak and Snap give it.
namespace browserfacts {
inline constexpr std::string_view braveEntries[]{"brave-browser", "com.brave.Browser", "brave", "brave_brave"};
inline constexpr std::string_view braveExecutables[]{"brave-browser", "brave-browser-stable", "brave"};
inline constexpr std::string_view bravePrograms[]{"brave"};
inline constexpr std::string_view braveProfiles[]{".config/BraveSoftware/Brave-Browser",
                                                  ".var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser",
                                                  "snap/brave/current/.config/BraveSoftware/Brave-Browser"};
inline constexpr std::string_view chromiumEntries[]{"chromium", "chromium-browser", "org.chromium.Chromium",
                                                    "chromium_chromium"};
inline constexpr std::string_view chromiumExecutables[]{"chromium", "chromium-browser"};
inline constexpr std::string_view chromiumPrograms[]{"chromium", "chromium-browser", "chromium/chrome",
                                                     "chromium-browser/chrome", "chrome-linux/chrome"};
inline constexpr std::string_view chromiumProfiles[]{
    ".config/chromium", ".var/app/org.chromium.Chromium/config/chromium", "snap/chromium/common/chromium"};
inline constexpr std::string_view chromiumExtensions[]{"/usr/share/chromium/extensions"};
inline constexpr std::string_view chromeEntries[]{"google-chrome", "com.google.Chrome"};
inline constexpr std::string_view chromeExecutables[]{"google-chrome", "google-chrome-stable"};
inline constexpr std::string_view chromePrograms[]{"chrome"};
inline constexpr std::string_view chromeProfiles[]{".config/google-chrome",
                                                   ".var/app/com.google.Chrome/config/google-chrome"};
inline constexpr std::string_view chromeExtensions[]{"/usr/share/google-chrome/extensions",
                                                     "/opt/google/chrome/extensions"};
inline constexpr std::string_view edgeEntries[]{"microsoft-edge", "com.microsoft.Edge"};
inline constexpr std::string_view edgeExecutables[]{"microsoft-edge", "microsoft-edge-stable"};
inline constexpr std::string_view edgePrograms[]{"msedge"};
inline constexpr std::string_view edgeProfiles[]{".config/microsoft-edge",
                                                 ".var/app/com.microsoft.Edge/config/microsoft-edge"};
inline constexpr std::string_view edgeExtensions[]{"/usr/share/microsoft-edge/extensions"};
inline constexpr std::string_view vivaldiEntries[]{"vivaldi-stable", "com.vivaldi.Vivaldi", "vivaldi"};
inline constexpr std::string_view vivaldiExecutables[]{"vivaldi", "vivaldi-stable"};
inline constexpr std::string_view vivaldiPrograms[]{"vivaldi-bin", "vivaldi"};
inline constexpr std::string_view vivaldiProfiles[]{".config/vivaldi", ".var/app/com.vivaldi.Vivaldi/config/vivaldi"};
} // namespace browserfacts

/// The supported browsers, in the order in which they are offered. Safari has no face on this platform. Rows are told
/// apart by their addresses, which are the same everywhere in the program.
inline constexpr std::array<BrowserFacts, 6> browserTable{{
    {"com.brave.browser",
     "Brave Browser",
     "brave",
     BrowserFamily::chromium,
     browserfacts::braveEntries,
     browserfacts::braveExecutables,
     browserfacts::bravePrograms,
     browserfacts::braveProfiles,
     "Brave-browser",
     {},
     ""},
    {"org.chromium.chromium", "Chromium", "chromium", BrowserFamily::chromium, browserfacts::chromiumEntries,
     browserfacts::chromiumExecutables, browserfacts::chromiumPrograms, browserfacts::chromiumProfiles, "Chromium",
     browserfacts::chromiumExtensions, "/etc/chromium/native-messaging-hosts"},
    {"com.google.chrome", "Google Chrome", "chrome", BrowserFamily::chromium, browserfacts::chromeEntries,
     browserfacts::chromeExecutables, browserfacts::chromePrograms, browserfacts::chromeProfiles, "Google-chrome",
     browserfacts::chromeExtensions, "/etc/opt/chrome/native-messaging-hosts"},
    {"com.microsoft.edgemac", "Microsoft Edge", "edge", BrowserFamily::chromium, browserfacts::edgeEntries,
     browserfacts::edgeExecutables, browserfacts::edgePrograms, browserfacts::edgeProfiles, "Microsoft-edge",
     browserfacts::edgeExtensions, "/etc/opt/edge/native-messaging-hosts"},
    {"com.apple.safari", "Safari", "safari", BrowserFamily::safari, {}, {}, {}, {}, "", {}, ""},
    {"com.vivaldi.vivaldi",
     "Vivaldi",
     "vivaldi",
     BrowserFamily::chromium,
     browserfacts::vivaldiEntries,
     browserfacts::vivaldiExecutables,
     browserfacts::vivaldiPrograms,
     browserfacts::vivaldiProfiles,
     "Vivaldi-stable",
     {},
     ""},
}};

/// A browser's id or name, and one of its profiles behind a slash: "org.chromium.chromium/work". Views into the text.
struct ProfiledName {
  std::string_view browser;
  std::string_view profile; ///< empty: whichever the user is in
};

[[nodiscard]] constexpr ProfiledName splitProfile(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos)
    return {text, {}};
  return {text.substr(0, slash), text.substr(slash + 1)};
}

/// The row of an id (in lower case) or a short name, with a profile or without; null for others. Case counts. The row
/// lives as long as the process.
[[nodiscard]] constexpr const BrowserFacts* findBrowser(std::string_view idOrShortName) {
  const std::string_view wanted = splitProfile(idOrShortName).browser;
  for (const BrowserFacts& facts : browserTable) {
    if (facts.id == wanted || facts.shortName == wanted)
      return &facts;
  }
  return nullptr;
}

/// True for the id of a browser of the Chromium family. False for Safari and for ids that no row has.
[[nodiscard]] constexpr bool isOfChromiumFamily(std::string_view id) {
  const BrowserFacts* facts = findBrowser(id);
  return facts != nullptr && facts->family == BrowserFamily::chromium;
}

/// The row of a program by its path: the one with the longest of the `programs` that the path ends with, in whole
/// components. So "/opt/google/chrome/chrome" is one browser and "/app/chromium/chrome" another. Null for others.
///
///     findBrowserOfProgram("/usr/lib/chromium/chromium")->id    // org.chromium.chromium
[[nodiscard]] constexpr const BrowserFacts* findBrowserOfProgram(std::string_view path) {
  const BrowserFacts* found = nullptr;
  std::size_t longest = 0;
  for (const BrowserFacts& facts : browserTable) {
    for (const std::string_view program : facts.programs) {
      const bool isEnd =
          path.ends_with(program) && (path.size() == program.size() || path[path.size() - program.size() - 1] == '/');
      if (isEnd && program.size() > longest) {
        found = &facts;
        longest = program.size();
      }
    }
  }
  return found;
}

} // namespace tabwright::platform
