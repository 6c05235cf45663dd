// The main actor is the loop of this thread; actions and connections run on a small pool, since they hold no thread
// while they wait. At the end the door is closed first, then what runs is cancelled and waited for, then all is taken
// down.
#include "app/HostProcess.h"

#include "app/Composition.h"
#include "app/ExitCode.h"
#include "app/HostServer.h"
#include "client/HostProtocol.h"
#include "crashreport/LoggingCrashReporter.h"
#include "engine/TemporaryScript.h"
#include "platform/LogSinks.h"
#include "platform/Logger.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/SignalStack.h"
#include "platform/linux/SystemClock.h"
#include "shell/Main.h"
#include "shell/WindowlessApplication.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <iostream>
#include <latch>
#include <memory>
#include <sys/socket.h>
#include <utility>

namespace tabwright::app {
namespace {

namespace asio = boost::asio;
namespace handover = client::handover;

constexpr std::size_t poolThreads = 2;
constexpr std::chrono::seconds patienceAtTheEnd{5};

// They came without close-on-exec, or they would not be here. No program that is started later is to hold the lock.
bool areHandedOver() {
  int isListening = 0;
  socklen_t length = sizeof isListening;
  return ::getsockopt(handover::socketDescriptor, SOL_SOCKET, SO_ACCEPTCONN, &isListening, &length) == 0 &&
         isListening != 0 && ::fcntl(handover::socketDescriptor, F_SETFD, FD_CLOEXEC) == 0 &&
         ::fcntl(handover::lockDescriptor, F_SETFD, FD_CLOEXEC) == 0;
}

HostDoor doorAt(const std::string& socketPath) {
  return {.socket = platform::FileDescriptor(handover::socketDescriptor),
          .lock = platform::FileDescriptor(handover::lockDescriptor),
          .path = socketPath};
}

/// Removes what processes that were killed have left: programs of their runs, sockets and locks of hosts.
void removeLeftovers(const std::filesystem::path& runtimeFolder) {
  platform::removeAbandonedFiles(runtimeFolder, handover::lockEnding, handover::socketEnding);
  try {
    platform::PosixFileManager files;
    platform::removeAbandonedFiles(engine::TemporaryScript::folder(files), engine::TemporaryScript::fileEnding);
  } catch (const platform::Failure& failure) {
    platform::Logger("Host").error("{}", failure.errorDescription());
  }
}

/// Everything that lives as long as the host; what is used by others is declared before them.
class Host {
public:
  Host(HostDoor door, std::string_view reportAddress)
      : runtimeFolder_(door.path.parent_path()), reports_(reportsTo(reportAddress)),
        server_({.mainActor = loop_.get_executor(),
                 .pool = pool_.get_executor(),
                 .catalogue = composition_.catalogue(),
                 .version = TABWRIGHT_VERSION,
                 .retired = [this] { stop(); }},
                std::move(door)) {
    signals_.async_wait([this](const boost::system::error_code& error, int) {
      if (!error)
        stop();
    });
  }

  void run() {
    server_.open();
    // On the pool, as the first caller waits already. This host's own files stay, since it holds their lock.
    asio::post(pool_, [folder = runtimeFolder_] { removeLeftovers(folder); });
    application_.finishLaunching();
    if (reports_)
      prepareForCrashes();
    loop_.run();
  }

private:
  std::unique_ptr<ErrorReports> reportsTo(std::string_view address) {
    auto options = ErrorReports::optionsFor(address);
    return options ? std::make_unique<ErrorReports>(*std::move(options), defaults_) : nullptr;
  }

  // Each thread of the pool waits here for the others, so each does this once.
  void prepareForCrashes() {
    const auto all = std::make_shared<std::latch>(poolThreads);
    for (std::size_t thread = 0; thread < poolThreads; ++thread) {
      asio::post(pool_, [all] {
        platform::ensureSignalStack();
        all->arrive_and_wait();
      });
    }
    asio::post(loop_, [this] { reports_->sendInBackground(); });
  }

  void stop() {
    if (std::exchange(isStopping_, true))
      return;
    application_.terminate();
    server_.close([this] { loop_.stop(); });
    // Whatever hangs then would hang as well when it is taken down in order.
    lastMoment_.expires_after(patienceAtTheEnd);
    lastMoment_.async_wait([this](const boost::system::error_code& error) {
      if (error)
        return;
      log_.error("An action doesn't end: the host is ended around it");
      std::_Exit(EXIT_FAILURE);
    });
  }

  platform::Logger log_{"Host"};
  bool isStopping_ = false;
  const std::filesystem::path runtimeFolder_;
  asio::io_context loop_{1};
  asio::thread_pool pool_{poolThreads};
  asio::signal_set signals_{loop_, SIGINT, SIGTERM, SIGHUP};
  asio::steady_timer lastMoment_{loop_};
  platform::SystemClock clock_;
  platform::LinuxUserDefaults defaults_;
  crashreport::LoggingCrashReporter logging_;
  const std::unique_ptr<ErrorReports> reports_; ///< null: nothing is reported to anyone
  // The application's own end comes 120 seconds after the start of the last action. One that takes longer has a caller
  // who waits for it, so the host ends behind the last of those.
  shell::WindowlessApplication application_{shell::Launch::hidden, [this] { server_.leave(); }};
  shell::Main main_{{.application = application_,
                     .defaults = defaults_,
                     .clock = clock_,
                     .mainActor = loop_.get_executor(),
                     .background = pool_.get_executor(),
                     .errorTracking = reports_ ? &reports_->tracker : nullptr}};
  Composition composition_{Composition::Lifecycle{
      .settings = main_.defaultsManager(),
      .shutdown = main_.shutdown(),
      .crashReporter = reports_ ? static_cast<crashreport::CrashReporter&>(reports_->reporter) : logging_}};
  HostServer server_;
};

} // namespace

int runHost(const std::string& socketPath, std::string_view reportAddress) {
  // A client that goes away is an error of its stream, not the end of the host.
  std::signal(SIGPIPE, SIG_IGN);
  if (!areHandedOver()) {
    std::cerr << "tabwright-host: “" << handover::command << "” is how “tabwright run” starts the background host.\n";
    return static_cast<int>(ExitCode::wrongUse);
  }
  platform::installLogSinks({.file = platform::defaultLogFile(), .fileLevel = platform::defaultFileLevel()});
  Host(doorAt(socketPath), reportAddress).run();
  return static_cast<int>(ExitCode::done);
}

} // namespace tabwright::app
