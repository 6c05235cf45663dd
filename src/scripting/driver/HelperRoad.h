#pragma once

#include "platform/Mutex.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserRoad.h"
#include "scripting/driver/PageVisits.h"
#include "scripting/driver/RelayConnection.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace tabwright::scripting {

class BrowserLink;

/// The helper's own account of itself and of the browser's profile that it is in.
struct HelperDescription {
  std::string helperVersion;
  std::string browserVersion;      ///< such as "156.0.8078.108"
  bool mayRunScripts = false;      ///< the switch “Allow User Scripts”
  bool seesPrivateWindows = false; ///< the switch “Allow in Incognito”
  bool readsFiles = false;         ///< the switch “Allow access to file URLs”
  std::string profile;             ///< made up by the helper, and kept in the profile for good
};

/// Asks the helper. Throws DriverFailure, DevToolsFailure, and JSONMismatch for an answer in another shape.
[[nodiscard]] HelperDescription describeHelper(HelperCalls& helper, const CallLimits& limits);

/// A browser that the user already runs, reached through the helper that is installed in one of its profiles.
///
/// JavaScript runs in the page's own world. Its value comes as the browser makes JSON of it; an exception gives null,
/// without its text. Nothing tells of a dialog that is open: calls to such a page end by their deadline. Some pages the
/// browser keeps to itself (its own settings, the shop of extensions, pages of `data:`): there the debugging port
/// answers, where the browser has one too; else an empty document of the helper's does, and a page job's run gets
/// notice of that. Keys and the browser's own controls are the port's alone.
class HelperRoad final : public BrowserRoad {
public:
  /// The link to the same browser by its debugging port; null where it has none.
  using FindPort = std::function<std::shared_ptr<BrowserLink>(const CallLimits&)>;

  /// Connects to the relay. Throws DevToolsFailure.
  HelperRoad(const platform::RunningBrowser& browser, const RelayPlace& relay, FindPort findPort,
             const CallLimits& limits);
  ~HelperRoad() override;

  [[nodiscard]] std::string_view name() const override { return "helper"; }
  [[nodiscard]] bool isOpen() const override { return helper_->isOpen(); }
  [[nodiscard]] std::string profileMark() const override { return description_.profile; }
  [[nodiscard]] bool runsScripts() const override { return description_.mayRunScripts; }
  [[nodiscard]] devtools::Traffic traffic() const override;

  std::unique_ptr<BrowserView> makeView(std::function<void()> onChange, const CallLimits& limits) override;
  void use(SeenBrowser& seen) override { seen_ = &seen; }

  void requireAnswer(const CallLimits& limits) override { helper_->requireAnswer(limits); }
  [[nodiscard]] std::unordered_map<std::string, std::string> destinations() override { return {}; }
  bool settleOthers(const CallLimits& limits) override;
  std::optional<devtools::Evaluation> evaluate(TabID tab, const std::string& code, const CallLimits& limits,
                                               std::optional<std::chrono::seconds> longest) override;

  std::int64_t perform(const RoadCommand& command, const CallLimits& limits) override;
  /// The helper may not close them.
  bool closeDeveloperTools(WindowID /*window*/, const CallLimits& /*limits*/) override { return false; }

private:
  void carryOut(const Navigate& command, const CallLimits& limits);
  void carryOut(const GoInHistory& command, const CallLimits& limits);
  void carryOut(const Reload& command, const CallLimits& limits);
  void carryOut(const StopLoading& command, const CallLimits& limits);
  std::int64_t carryOut(const PlayKeys& command, const CallLimits& limits);
  void carryOut(const SetBounds& command, const CallLimits& limits);
  void carryOut(const SetShape& command, const CallLimits& limits);
  void carryOut(const ShowControls& command, const CallLimits& limits);
  void carryOut(const Quit& command, const CallLimits& limits);

  /// A run is doing something to a tab's page that may make it leave. True when the last one to do so was another, and
  /// what has come of that isn't known yet.
  bool noteVisit(TabID tab, const CallLimits& limits);
  /// An evaluation of the run's has ended, and a probe of that number is on its way behind it.
  void noteProbe(TabID tab, std::int64_t probe);
  /// The time, in milliseconds, that the helper may wait for the tab's page to come.
  std::int64_t patienceWith(TabID tab, const CallLimits& limits);
  /// The port's link; throws DriverFailure `refused` with the sentence where there is none.
  std::shared_ptr<BrowserLink> requirePort(const char* without, const CallLimits& limits);

  const platform::RunningBrowser browser_;
  const FindPort findPort_;
  struct Visit {
    TabID tab;
    std::stop_token run;
    std::int64_t probe = 0; // 0 where none is under way
  };
  /// Shared with the connection's thread, which may call it while this goes.
  struct Heard;
  const std::shared_ptr<Heard> heard_;
  const std::shared_ptr<RelayConnection> helper_;
  const HelperDescription description_; // as it was when we connected
  SeenBrowser* seen_ = nullptr;
  PageVisits visits_; // for the runs that have waited in vain
};

} // namespace tabwright::scripting
