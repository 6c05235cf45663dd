#include "updates/UpdateOutcome.h"

#include "updates/UpdateText.h"

namespace tabwright::updates {
namespace {

std::string adviceOnUpdate(const UpdateCheck& check) {
  const bool isPackage = check.installation.kind == Installation::Kind::package;
  if (!check.update->enclosure && !isPackage)
    return check.update->link.empty() ? updateText("Get it where you got this copy.")
                                      : updateText("Get it from %1$@", {check.update->link});
  std::string advice = adviceOn(check.installation);
  return advice.empty() ? updateText("“tabwright update --install” puts it in place.") : advice;
}

} // namespace

UpdateOutcome outcomeOf(const UpdateCheck& check, const RunningBuild& build) {
  UpdateOutcome outcome;
  if (!check.update) {
    outcome.headline = updateText("Tabwright %1$@ is up to date.", {build.shownVersion});
    return outcome;
  }
  outcome.kind = UpdateOutcome::Kind::available;
  outcome.version = check.update->shownVersion();
  outcome.headline = updateText("Tabwright %1$@ is available. You have %2$@.", {outcome.version, build.shownVersion});
  outcome.advice = adviceOnUpdate(check);
  outcome.notes = check.update->description;
  outcome.notesLink = check.update->releaseNotesLink;
  outcome.canBeInstalled = check.update->enclosure && check.installation.kind == Installation::Kind::archive;
  return outcome;
}

UpdateOutcome installedOutcome(const AppcastItem& update, const std::filesystem::path& formerCopy) {
  UpdateOutcome outcome;
  outcome.kind = UpdateOutcome::Kind::installed;
  outcome.version = update.shownVersion();
  outcome.headline = updateText("Tabwright %1$@ is installed, and runs from the next start on.", {outcome.version});
  outcome.advice = updateText("The former version is kept in %1$@", {formerCopy.string()});
  return outcome;
}

UpdateOutcome noFeedOutcome(const Installation& installation) {
  UpdateOutcome outcome;
  outcome.kind = UpdateOutcome::Kind::noFeed;
  outcome.headline = updateText("This build doesn’t look for updates.");
  outcome.advice = installation.kind == Installation::Kind::package
                       ? adviceOn(installation)
                       : updateText("Get newer versions where you got this copy.");
  return outcome;
}

UpdateOutcome failedOutcome(const platform::Failure& failure) {
  UpdateOutcome outcome;
  outcome.kind = UpdateOutcome::Kind::failed;
  outcome.headline = failure.errorDescription();
  return outcome;
}

} // namespace tabwright::updates
