#pragma once

#include "devtools/Discovery.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserRoad.h"
#include "scripting/driver/NativeControls.h"
#include "scripting/driver/PageSessions.h"
#include "scripting/driver/PageVisits.h"
#include "scripting/driver/TabPages.h"

#include <filesystem>
#include <memory>

namespace tabwright::scripting {

/// A browser reached over its debugging port, by the DevTools protocol. It is given the helper, which sees its windows
/// and tabs; where it takes none, the protocol alone sees them.
class ProtocolRoad final : public BrowserRoad {
public:
  /// Connects. `browser` is the one that listens at the endpoint, `helperDirectory` absolute.
  ProtocolRoad(const platform::RunningBrowser& browser, const devtools::Endpoint& endpoint,
               std::filesystem::path helperDirectory, const CallLimits& limits);

  [[nodiscard]] std::string_view name() const override { return "debugging port"; }
  [[nodiscard]] bool isOpen() const override { return connection_->isOpen(); }
  [[nodiscard]] devtools::Traffic traffic() const override { return connection_->traffic(); }

  /// The helper's view where the browser takes the helper; else the protocol's, which guesses at orders.
  std::unique_ptr<BrowserView> makeView(std::function<void()> onChange, const CallLimits& limits) override;
  void use(SeenBrowser& seen) override;

  void requireAnswer(const CallLimits& limits) override { connection_->requireAnswer(limits); }
  [[nodiscard]] std::unordered_map<std::string, std::string> destinations() override { return pages_.destinations(); }
  bool settleOthers(const CallLimits& limits) override { return visits_.settleOthers(limits); }
  std::optional<devtools::Evaluation> evaluate(TabID tab, const std::string& code, const CallLimits& limits,
                                               std::optional<std::chrono::seconds> longest) override;

  std::int64_t perform(const RoadCommand& command, const CallLimits& limits) override;
  bool closeDeveloperTools(WindowID window, const CallLimits& limits) override;

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

  const platform::RunningBrowser browser_;
  const std::filesystem::path helperDirectory_;
  const std::shared_ptr<devtools::Connection> connection_;
  /// Pages that calls have been about, and what runs have done to them.
  PageSessions pages_;
  PageVisits visits_;
  NativeControls controls_;
  std::unique_ptr<TabPages> tabs_; // uses the rest
};

} // namespace tabwright::scripting
