#pragma once

#include "platform/Failure.h"
#include "updates/UpdateSteps.h"

#include <filesystem>
#include <string>

namespace tabwright::updates {

/// All that a user is shown of a check for updates, or of an installation. Sentences are in the user's language.
struct UpdateOutcome {
  enum class Kind {
    upToDate,
    available,
    installed, ///< it is in place, and runs from the next start on
    noFeed,    ///< this build looks for none
    failed,
  };
  Kind kind = Kind::upToDate;
  std::string headline;        ///< one sentence, such as "Tabwright 0.2.0 is available. You have 0.1.0 (1)."
  std::string advice;          ///< what the user can do, or what happened; may be empty
  std::string version;         ///< of the update, as users know it
  std::string notes;           ///< what is new, as HTML of the feed's makers; may be empty
  std::string notesLink;       ///< a page that tells it; may be empty
  bool canBeInstalled = false; ///< by this program, here and now
};

[[nodiscard]] UpdateOutcome outcomeOf(const UpdateCheck& check, const RunningBuild& build);
[[nodiscard]] UpdateOutcome installedOutcome(const AppcastItem& update, const std::filesystem::path& formerCopy);
/// For a build without a feed.
[[nodiscard]] UpdateOutcome noFeedOutcome(const Installation& installation);
[[nodiscard]] UpdateOutcome failedOutcome(const platform::Failure& failure);

} // namespace tabwright::updates
