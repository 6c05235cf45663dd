#pragma once

#include "connect/ConnectFault.h"
#include "connect/ConnectionState.h"
#include "connect/HelperParts.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace tabwright::connect {

/// Follows browsers from the installation until one of them can be driven, and tells each step once, as it becomes due.
///
///     ConnectWatch watch(parts);
///     while (!watch.isConnected()) {
///       for (const std::string& sentence : watch.observe(lookAtConnections(directories, parts, limits)))
///         print(sentence);
///       …
///     }
class ConnectWatch {
public:
  explicit ConnectWatch(const HelperParts& parts) : parts_(parts) {}

  /// Takes in how the browsers are now, and yields what is new to say: a helper that came, a switch that was thrown,
  /// and what to do next. Browsers that can't be connected are passed over.
  std::vector<std::string> observe(const std::vector<ConnectionState>& states);

  /// One of the browsers could be driven in full when they were last observed.
  [[nodiscard]] bool isConnected() const { return isConnected_; }
  /// After a wait that has ended in vain: the failure that says what is still to be done, ConnectFault `noScripts` or
  /// `notSeen`. `seconds` is the time that was waited.
  [[nodiscard]] ConnectFailure failureAfter(int seconds) const;

private:
  void say(std::vector<std::string>& news, const std::string& sentence);

  const HelperParts parts_;
  std::set<std::string> said_;
  std::set<std::filesystem::path> complained_; ///< the directories whose helper could not be spoken to last time
  std::vector<ConnectionState> last_;
  bool isConnected_ = false;
};

} // namespace tabwright::connect
