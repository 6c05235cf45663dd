#pragma once

#include <map>
#include <set>
#include <string>

namespace tabwright::actions {

/// Keeps the names that users gave to windows of Safari, which can't hold a name itself. They outlive the
/// process; a name stays until a `prune` finds its window gone.
///
/// Keys are the windows' full ids, "com.apple.safari:17". Each call is one step that no other call interrupts, and may
/// come from any thread. What can't be stored or read counts as not there; nothing throws.
class WindowNames {
public:
  virtual ~WindowNames() = default;

  /// Gives a window a name, in place of the one it has.
  virtual void set(const std::string& fullID, const std::string& name) = 0;
  /// All names by full id.
  [[nodiscard]] virtual std::map<std::string, std::string> names() const = 0;
  /// Forgets the names of all windows but those in `fullIDs`.
  virtual void prune(const std::set<std::string>& fullIDs) = 0;
};

} // namespace tabwright::actions
