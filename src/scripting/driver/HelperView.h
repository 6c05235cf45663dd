#pragma once

#include "platform/JSONReader.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserView.h"
#include "scripting/driver/HelperCalls.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::scripting {

/// Reads the helper's answer to `snapshot`: windows front to back, tabs in strip order, the target of each tab.
/// `version` is put into the snapshot. Throws JSONMismatch, which names the place.
[[nodiscard]] ViewedBrowser readHelperSnapshot(const platform::JSONReader& answer, std::string version);

/// The tabs that the answer tells of, in the place of those with the same ids or, where they are new, at their places
/// in the strip; nothing when they don't fit in. An answer without any leaves the snapshot itself as it is. Throws as
/// above.
[[nodiscard]] std::optional<ViewedBrowser> withNews(const ViewedBrowser& before, const platform::JSONReader& answer);

/// The browser as its helper sees it, in the true order of windows and tabs. A look costs one round trip, two when its
/// news don't fit. Throws
/// JSONMismatch too, for an answer in another shape.
class HelperView final : public BrowserView {
public:
  /// `version` is the browser's, which the helper doesn't know.
  HelperView(std::shared_ptr<HelperCalls> helper, std::string version);

  ViewedBrowser look(const Extent& extent, const CallLimits& limits) override;
  /// The helper reports each change, of developer tools too.
  [[nodiscard]] bool reportsChanges() const override { return true; }
  std::int64_t perform(const ViewCommand& command, const CallLimits& limits) override;

private:
  /// The last look, with the count of changes that it holds for, and the run of the helper that counted.
  struct Seen {
    std::string instance;
    std::int64_t changes = 0;
    ViewedBrowser viewed;
  };

  /// Keeps the look for the news of the next one, and yields it.
  ViewedBrowser keep(const platform::JSONReader& answer, ViewedBrowser viewed);

  const std::shared_ptr<HelperCalls> helper_;
  const std::string version_;
  platform::Mutex mutex_;
  std::optional<Seen> seen_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
