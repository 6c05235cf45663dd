#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "support/ScratchFolder.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::support {

/// A headless Chromium with a fresh profile in a temporary directory, which ends with this object, and with this
/// process however that ends.
///
///     ChromiumProcess chromium;                       // returns when it accepts remote debugging
///     ChromiumDriver driver(facts, {helperDirectory(), chromium.finder()});
class ChromiumProcess {
public:
  enum class Debugging { on, off };
  /// The road that the tests go by, which one variable of the environment decides (TABWRIGHT_TEST_ROAD=helper): the
  /// browser has a debugging port, or an installed helper with all its switches on.
  enum class Road { port, helper };
  [[nodiscard]] static Road road();

  /// Starts it. With debugging on, waits until it listens, or, on the helper's road, until its relay does; with
  /// debugging off, until its process is seen. Throws std::runtime_error when that takes more than a minute.
  explicit ChromiumProcess(Debugging debugging = Debugging::on);
  ~ChromiumProcess();
  ChromiumProcess(const ChromiumProcess&) = delete;
  ChromiumProcess& operator=(const ChromiumProcess&) = delete;

  [[nodiscard]] pid_t process() const { return process_; }
  [[nodiscard]] const std::filesystem::path& profileDirectory() const { return profile_.path(); }
  /// This browser as the process file system tells of it; nothing once it has ended.
  [[nodiscard]] std::vector<platform::RunningBrowser> find() const;
  /// The processes of its pages, without those of extensions.
  [[nodiscard]] std::vector<pid_t> pageProcesses() const;
  /// Ends it at once, as a crash would, and waits for that.
  void kill();

private:
  void installHelper() const;
  [[nodiscard]] bool isReached() const;
  void waitUntilReady(Debugging debugging);

  testsupport::ScratchFolder profile_; // goes once the browser has ended
  pid_t process_ = 0;
};

/// The helper of this checkout.
[[nodiscard]] std::filesystem::path helperDirectory();

} // namespace tabwright::support
