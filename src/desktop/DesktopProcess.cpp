// Qt's loop drives the main thread and is the main actor; what takes time runs on a pool and posts its outcome back.
// Actions run in the background host or in their own processes as ever: this process only shows and sets up.
#include "desktop/DesktopProcess.h"

#include "app/Composition.h"
#include "app/FeedUpdates.h"
#include "crashreport/LoggingCrashReporter.h"
#include "desktop/SingleInstance.h"
#include "desktop/SystemLook.h"
#include "desktop/UpdateMessage.h"
#include "platform/DesktopFault.h"
#include "platform/LogSinks.h"
#include "platform/linux/GnomeAppearance.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "platform/linux/SystemClock.h"
#include "shell/Main.h"
#include "shell/Varn.h"
#include "views/MainWindow.h"
#include "views/QtDesktopApplication.h"
#include "views/QtExecutor.h"
#include "views/Services.h"
#include "views/Text.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPalette>
#include <QStyleFactory>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::desktop {
namespace {

namespace asio = boost::asio;

constexpr std::size_t poolThreads = 4; // a look, a trial, settings and one to spare

/// Qt follows no desktop's wish for dark windows by itself where it has no theme of that desktop.
void takeAppearance() {
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  bool isDark = false;
  try {
    isDark = platform::GnomeAppearance().isDark();
  } catch (const platform::DesktopFailure&) {
    return; // the desktop has no such wish
  }
  if (!isDark)
    return;
  QPalette dark;
  const QColor ground(36, 36, 38);
  const QColor letters(235, 235, 235);
  for (const auto role : {QPalette::Window, QPalette::Button, QPalette::AlternateBase, QPalette::ToolTipBase})
    dark.setColor(role, ground);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    dark.setColor(role, letters);
  dark.setColor(QPalette::Base, QColor(28, 28, 30));
  dark.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
  dark.setColor(QPalette::Link, QColor(120, 174, 237));
  dark.setColor(QPalette::Highlight, QColor(53, 132, 228));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    dark.setColor(QPalette::Disabled, role, QColor(150, 150, 150));
  QApplication::setPalette(dark);
}

/// Everything that lives as long as the process; what is used by others is declared before them.
class Desktop {
public:
  Desktop()
      : main_({.application = application_,
               .defaults = defaults_,
               .clock = clock_,
               .mainActor = mainActor_,
               .background = pool_.get_executor(),
               .makeUpdateController = app::feedUpdates(mainActor_, clock_, application_)}),
        composition_({.settings = main_.defaultsManager(),
                      .shutdown = main_.shutdown(),
                      .crashReporter = crashReporter_,
                      .activateSelf = [this] { asio::post(mainActor_, [this] { show(); }); }}),
        services_(makeServices()) {
    shell::UpdateController& controller = *main_.updateManager().sharedUpdaterController();
    controller.setPresent([&controller](const updates::UpdateOutcome& outcome) {
      showUpdateOutcome(outcome, [&controller] { controller.installUpdate(); });
    });
    application_.launch({.mainWindow = [this] { return views::makeMainWindow(services_); },
                         .onboardingWindow = [this] { return views::makeOnboardingWindow(services_); }});
  }

  // Work that still runs may be at a question that takes seconds; nobody waits for its answer any more.
  ~Desktop() { pool_.stop(); }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// The window that the user is at: the setup's while it is open, else the main one.
  void show() {
    shell::Window* setup = application_.onboardingWindow();
    if (setup && setup->isVisible())
      setup->makeKeyAndOrderFront();
    else
      shell::Varn::Windows::showMainWindow(application_);
  }

private:
  /// Runs `work` on the pool and `done` with its result on the main actor.
  template <class Work, class Done>
  void inBackground(Work work, Done done) {
    asio::post(pool_, [this, work = std::move(work), done = std::move(done)]() mutable {
      asio::post(mainActor_, [result = work(), done = std::move(done)] { done(result); });
    });
  }

  /// All that ask while a trial runs wait for that one.
  void request(std::function<void()> done) {
    requests_.push_back(std::move(done));
    if (requests_.size() > 1)
      return;
    asio::co_spawn(pool_, permissions_.requestBrowserPermissions(), [this](const std::exception_ptr&) {
      asio::post(mainActor_, [this] {
        for (const std::function<void()>& each : std::exchange(requests_, {}))
          each();
      });
    });
  }

  views::Services makeServices() {
    return {
        .application = application_,
        .main = main_,
        .endpoints = shell::Endpoints::ofThisBuild(),
        .now = [this] { return clock_.secondsSinceReferenceDate(); },
        .requestBrowserPermissions = [this](std::function<void()> done) { request(std::move(done)); },
        .isRequestingPermissions = [this] { return !requests_.empty(); },
        .look =
            [this](std::function<void(views::SystemCondition)> done) {
              inBackground([this] { return lookAtSystem(composition_.targets(), composition_.accessibility()); },
                           std::move(done));
            },
        .mend =
            [this](const std::string& id, views::Mending mending, std::function<void(std::string)> done) {
              inBackground([id, mending] { return desktop::mend(id, mending); }, std::move(done));
            },
        .runningBrowsers = [this] { return namesOfRunningBrowsers(composition_.targets()); },
        .checkForUpdates = [this] { main_.updateManager().checkForUpdatesOnDemand(); },
    };
  }

  asio::thread_pool pool_{poolThreads};
  views::QtExecutor mainActor_{pool_};
  platform::SystemClock clock_;
  platform::LinuxUserDefaults defaults_;
  crashreport::LoggingCrashReporter crashReporter_;
  views::QtDesktopApplication application_;
  shell::Main main_;
  app::Composition composition_;
  shell::BrowserPermissions permissions_{composition_.browserPermissions()};
  std::vector<std::function<void()>> requests_; ///< of the trial that runs
  views::Services services_;
};

} // namespace

int runDesktop(int argumentCount, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);
  // Qt waits for the desktop to switch accessibility on, and may miss it. These windows can always be driven from
  // outside.
  ::setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 0);
  QApplication application(argumentCount, arguments);
  QApplication::setApplicationName(views::text(shell::Varn::App::name));
  QApplication::setDesktopFileName(views::text(shell::Varn::App::bundleIdentifier));
  QApplication::setWindowIcon(QIcon::fromTheme(views::text(shell::Varn::App::bundleIdentifier)));
  std::function<void()> activate;
  const SingleInstance instance([&activate] {
    if (activate)
      activate();
  });
  if (instance.isSecond())
    return 0;
  platform::installLogSinks({.file = platform::defaultLogFile(), .fileLevel = platform::defaultFileLevel()});
  takeAppearance();
  Desktop desktop;
  activate = [&desktop] { desktop.show(); };
  return QApplication::exec();
}

} // namespace tabwright::desktop
