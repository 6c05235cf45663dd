#pragma once

#include "platform/WindowSystem.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// An application that is installed for this user, as its desktop entry tells.
struct InstalledApplication {
  std::string id;   ///< of its desktop entry, such as "org.xfce.mousepad", in the writing of its file
  std::string name; ///< in the user's language
};

/// The last part of an id in reverse domain notation, by which a user may call its application: "mousepad". The whole
/// id where it has no dot. A view into it.
[[nodiscard]] inline std::string_view shortName(std::string_view id) {
  return id.substr(id.find_last_of('.') + 1);
}

/// The installed applications, and which of them a window belongs to.
///
/// All calls read the files anew where they have changed, and may come from several threads. What can't be read is not
/// there.
///
///     if (const auto editor = applications.find("mousepad"))
///       applications.start(*editor);
class InstalledApplications {
public:
  virtual ~InstalledApplications() = default;

  /// The application of an id, or else the only one of a short name. Case doesn't count. Nothing when there is none, or
  /// its entry is hidden or damaged, or the program isn't there.
  [[nodiscard]] virtual std::optional<InstalledApplication> find(std::string_view id) = 0;

  /// The application that a window belongs to, by the first that fits: the id that the window tells, the class that an
  /// entry tells, the entry of the class's name, the program that runs.
  [[nodiscard]] virtual std::optional<InstalledApplication> applicationOf(const ClientWindow& window) = 0;

  /// Starts the application, whether or not it runs already; many programs then hand over to the one that does.
  /// Returns when its program has been started, which is before it has a window. It outlives this process. Throws
  /// DesktopFailure `cannotStart`.
  virtual void start(const InstalledApplication& application) = 0;
};

} // namespace tabwright::platform
