#include "updates/UpdateSteps.h"

#include "updates/Address.h"
#include "updates/Archive.h"
#include "updates/Download.h"
#include "updates/ProgramRun.h"
#include "updates/Signature.h"
#include "updates/UpdateFault.h"
#include "updates/UpdateText.h"
#include "updates/Version.h"

#include <fmt/core.h>

#include <chrono>
#include <string_view>

namespace tabwright::updates {
namespace {

namespace fs = std::filesystem;
using platform::failure;

constexpr std::chrono::seconds feedPatience{30};
constexpr std::chrono::minutes installationPatience{10};
constexpr std::chrono::seconds packagePatience{10};
constexpr std::chrono::seconds startPatience{30};

// The signature tells who made an archive, but not which version it is: an old one under a new label would be a
// downgrade. So the program itself is asked, which also shows that it runs here.
void requireFitProgram(const fs::path& folder, const AppcastItem& update, const RunningBuild& build,
                       const platform::CallLimits& limits) {
  if (!holdsProgram(folder))
    throw failure(UpdateFault::unfitProgram, fmt::format("{} or {} is missing in it", clientPath, hostPath));
  const auto answer = runProgram({(folder / hostPath).string(), "--version"}, limits.within(startPatience));
  if (limits.stop.stop_requested())
    throw failure(UpdateFault::stopped);
  if (!answer || answer->exitCode != 0)
    throw failure(UpdateFault::unfitProgram, "its program does not start on this system");
  constexpr std::string_view name = "tabwright ";
  const std::string_view line = std::string_view(answer->output).substr(0, answer->output.find('\n'));
  if (!line.starts_with(name) || !isVersion(line.substr(name.size())))
    throw failure(UpdateFault::unfitProgram, "its program does not tell its version");
  const std::string_view version = line.substr(name.size());
  if (compareVersions(version, build.programVersion) < 0)
    throw failure(UpdateFault::unfitProgram,
                  fmt::format("it was announced as {}, but is the older {}", update.shownVersion(), version));
}

} // namespace

UpdateCheck checkForUpdate(const UpdateFacts& facts, const platform::CallLimits& limits) {
  const Appcast appcast = readAppcast(fetchText(facts.feed, longestAppcast, limits.within(feedPatience)));
  UpdateCheck check{.update = bestUpdate(appcast, facts.build),
                    .installation = findInstallation(facts.program, limits.within(packagePatience))};
  if (check.update && check.update->enclosure)
    requireSecure(check.update->enclosure->url, facts.feed);
  return check;
}

fs::path installUpdate(const UpdateFacts& facts, const UpdateCheck& check, const platform::CallLimits& limits,
                       const RenamePath& rename) {
  if (std::string advice = adviceOn(check.installation); !advice.empty())
    throw failure(UpdateFault::notOurs, std::move(advice));
  const platform::CallLimits bounded = limits.within(installationPatience);
  const AppcastItem& update = check.update.value();
  if (!isPublicKey(facts.key))
    throw failure(UpdateFault::unusableKey);
  if (!update.enclosure || update.enclosure->signature.empty())
    throw failure(UpdateFault::unsignedArchive);
  requireSecure(update.enclosure->url, facts.feed);

  FolderReplacement fresh(check.installation.folder, rename);
  {
    const platform::FileDescriptor archive = fetchFile(update.enclosure->url, update.enclosure->length, bounded);
    requireSignature(archive, update.enclosure->signature, facts.key);
    unpackArchive(archive, fresh.folder());
  }
  requireFitProgram(fresh.folder(), update, facts.build, bounded);
  fresh.takePlace();
  return check.installation.folder.string() + replacedEnding;
}

std::string adviceOn(const Installation& installation) {
  switch (installation.kind) {
  case Installation::Kind::package:
    return updateText("This copy came from a package: “%1$@” updates it.", {installation.command});
  case Installation::Kind::archive:
    return {};
  case Installation::Kind::other:
    return updateText("This copy can’t be replaced from here.") + " " + installation.obstacle;
  }
  return {};
}

} // namespace tabwright::updates
