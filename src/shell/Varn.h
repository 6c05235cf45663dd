#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::shell {

class Application;
class Window;

/// The namespace of facts and helpers that belong to the program as a whole.
struct Varn {
  /// The facts of the program. Set when it is built; the same for the process's life.
  struct App {
    enum class CurrentBuild { Preview, Development, Beta, Production };
    /// The channel of this build: its environment in crash reports, its news and its update feed follow from it.
    static constexpr CurrentBuild currentBuild = CurrentBuild::Beta;

    static constexpr std::string_view bundleIdentifier = "com.tabwright.tabwright";
    static constexpr std::string_view name = "Tabwright";
    [[nodiscard]] static std::string_view version();    ///< as in "0.1.0"
    [[nodiscard]] static std::string_view build();      ///< as in "1"
    [[nodiscard]] static std::string release();         ///< as in "0.1.0 (1)"
    [[nodiscard]] static std::string_view updateFeed(); ///< the address; empty: this build looks for no updates
    [[nodiscard]] static std::string_view updateKey();  ///< the public key of updates, in base64
    /// One line for the log: "com.tabwright.tabwright / 0.1.0 (1) / PID: 4711".
    [[nodiscard]] static std::string identificationLine();
  };

  /// Windows of the program. On the main actor only.
  struct Windows {
    /// The first window whose identifier is "main"; null when there is none. Owned by the application.
    [[nodiscard]] static Window* mainWindow(const Application& application);
    /// Brings the main window to the front, if there is one.
    static void showMainWindow(const Application& application);
    /// Shows the setup, in the one window that it has: one that is open comes to the front as it is, a closed one
    /// starts over. The title is "Set up Tabwright" where none is given.
    static void showOnboardingWindow(Application& application, const std::optional<std::string>& title = {});
    /// Switches tabs of windows off, and closes all windows but the main one.
    static void cleanUp(Application& application);
  };
};

/// The name of the channel as other systems know it, such as "Beta".
[[nodiscard]] std::string_view nameOf(Varn::App::CurrentBuild build);

} // namespace tabwright::shell
