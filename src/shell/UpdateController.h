#pragma once

namespace tabwright::shell {

/// The machinery that looks for newer versions, as far as the life of the program has to do with it. On the main actor.
class UpdateController {
public:
  virtual ~UpdateController() = default;

  /// Starts the regular checks. Called once, when the main window's content first appears.
  virtual void startUpdater() = 0;
};

} // namespace tabwright::shell
