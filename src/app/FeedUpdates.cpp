// The updater knows nothing of the shell, and the shell only its own interface: here they are put together.
#include "app/FeedUpdates.h"

#include "platform/AsciiCase.h"
#include "platform/linux/BaseDirectories.h"
#include "shell/Varn.h"
#include "updates/Installation.h"
#include "updates/Updater.h"

#include <fmt/core.h>

#include <memory>
#include <utility>

namespace tabwright::app {
namespace {

using shell::Varn;

class FeedUpdateController final : public shell::UpdateController {
public:
  FeedUpdateController(boost::asio::any_io_executor mainActor, platform::Clock& clock,
                       const shell::Application& application, shell::UpdateControllerDelegate& delegate)
      : updater_({
            .mainActor = std::move(mainActor),
            .clock = clock,
            .facts = [&delegate] { return updateFacts(delegate.feedURLStringForUpdater()); },
            .isWindowOpen = [&application] { return !application.windows().empty(); },
            .lastCheckFile = platform::stateHome() / "tabwright" / "last-update-check",
            .didFinishLoading = [&delegate] { delegate.updaterDidFinishLoadingAppcast(); },
            .didFind = [&delegate] { delegate.updaterDidFindValidUpdate(); },
            .didNotFind = [&delegate] { delegate.updaterDidNotFindUpdate(); },
            .didFinishCycle = [&delegate] { delegate.updaterDidFinishUpdateCycleForUpdateCheck(); },
            .present =
                [this](const updates::UpdateOutcome& outcome) {
                  if (present_)
                    present_(outcome);
                },
        }) {}

  void startUpdater() override { updater_.start(); }
  void checkForUpdates() override { updater_.check(); }
  void installUpdate() override { updater_.install(); }
  void setPresent(Present present) override { present_ = std::move(present); }

private:
  Present present_;
  updates::Updater updater_;
};

} // namespace

updates::UpdateFacts updateFacts(std::string feed) {
  return {.feed = std::move(feed),
          .key = std::string(Varn::App::updateKey()),
          .build = {.version = fmt::format("{}.{}", Varn::App::version(), Varn::App::build()),
                    .programVersion = std::string(Varn::App::version()),
                    .shownVersion = Varn::App::release(),
                    .channels = {platform::lowercased(nameOf(Varn::App::currentBuild))},
                    .systemVersion = updates::systemVersion()},
          .program = updates::ownProgram()};
}

shell::MakeUpdateController feedUpdates(boost::asio::any_io_executor mainActor, platform::Clock& clock,
                                        const shell::Application& application) {
  return [mainActor = std::move(mainActor), &clock, &application](shell::UpdateControllerDelegate& delegate) {
    return std::make_unique<FeedUpdateController>(mainActor, clock, application, delegate);
  };
}

} // namespace tabwright::app
