// The lock's file also keeps the time before which the collector wants to hear nothing: as its own time of change,
// which is set in one step and needs no file of its own.
#include "crashreport/ReportSender.h"

#include "crashreport/CrashRecord.h"
#include "crashreport/HttpPost.h"
#include "crashreport/ReportEvent.h"
#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/linux/FileLock.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <utility>

namespace tabwright::crashreport {
namespace {

using std::chrono::seconds;

const platform::Logger senderLog("ReportSender");

constexpr seconds pauseUnlessTold{60};
constexpr seconds longestPause{24 * 60 * 60};
constexpr double referenceDate = 978'307'200; ///< 2001-01-01 in seconds since 1970
constexpr const char* lockName = "sender.lock";

constexpr int tooManyRequests = 429;

bool isTaken(int status) {
  return status >= 200 && status < 300;
}

bool isRefusedForGood(int status) {
  return status >= 400 && status < 500 && status != tooManyRequests;
}

/// Nothing while another process has it.
std::optional<platform::FileLock> lockOf(const ReportSpool& spool) {
  try {
    return platform::FileLock(spool.path() / lockName, std::chrono::nanoseconds(0));
  } catch (const platform::FileFailure& failure) {
    if (failure.errorNumber() == EWOULDBLOCK)
      return std::nullopt;
    throw;
  }
}

} // namespace

ReportSender::ReportSender(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

void ReportSender::send(const platform::CallLimits& limits) {
  const std::optional<platform::FileLock> lock = lockOf(surroundings_.spool);
  if (!lock)
    return;
  convertCrashes();
  if (isAskedToWait())
    return;
  for (const std::string& name : surroundings_.spool.names(ReportSpool::envelopeEnding)) {
    if (limits.hasPassed())
      return;
    const std::optional<std::string> envelope = surroundings_.spool.read(name);
    if (!envelope)
      continue;
    const Answer answer = post(*envelope);
    if (answer.isDoneWith)
      surroundings_.spool.remove(name);
    if (!answer.isNextWelcome)
      return;
  }
}

// The envelope comes first: a process that is killed in between leaves a report twice rather than none.
void ReportSender::convertCrashes() {
  for (const std::string& name : surroundings_.spool.names(ReportSpool::crashEnding)) {
    const std::optional<std::string> text = surroundings_.spool.read(name);
    const std::optional<CrashRecord> record = text ? CrashRecord::parse(*text) : std::nullopt;
    if (record) {
      const ReportEvent event = ReportEvent::of(*record);
      senderLog.error("The host ended by {}: report {}", event.exception->type, event.id);
      surroundings_.spool.add(envelopeOf(event));
    } else {
      senderLog.error("The record of a crash can't be read: it is dropped");
    }
    surroundings_.spool.remove(name);
  }
}

ReportSender::Answer ReportSender::post(const std::string& envelope) {
  const Dsn& dsn = surroundings_.dsn;
  const std::optional<HttpAnswer> answer =
      httpPost(dsn.envelopeURL,
               {"Content-Type: application/x-sentry-envelope", "User-Agent: " + surroundings_.client,
                fmt::format("X-Sentry-Auth: Sentry sentry_version=7, sentry_client={}, sentry_key={}",
                            surroundings_.client, dsn.publicKey)},
               envelope, surroundings_.answerPatience);
  if (!answer)
    return {};
  senderLog.info("A report was answered with {}", answer->status);
  const bool wantsTime = answer->status == tooManyRequests || answer->retryAfter;
  if (wantsTime)
    waitFor(answer->retryAfter.value_or(pauseUnlessTold));
  const bool isDoneWith = isTaken(answer->status) || isRefusedForGood(answer->status);
  return {.isDoneWith = isDoneWith, .isNextWelcome = isDoneWith && !wantsTime};
}

bool ReportSender::isAskedToWait() const {
  struct stat facts{};
  if (::fstatat(surroundings_.spool.descriptor(), lockName, &facts, AT_SYMLINK_NOFOLLOW) != 0)
    return false;
  const double left = static_cast<double>(facts.st_mtim.tv_sec) - referenceDate - now();
  return left > 0 && left <= static_cast<double>(longestPause.count()) + 1; // beyond that the clock was another one
}

void ReportSender::waitFor(seconds pause) {
  const double until = now() + static_cast<double>(std::min(pause, longestPause).count()) + referenceDate;
  timespec times[2]{};
  times[0].tv_nsec = UTIME_OMIT;
  times[1].tv_sec = static_cast<std::time_t>(std::ceil(until));
  ::utimensat(surroundings_.spool.descriptor(), lockName, times, AT_SYMLINK_NOFOLLOW);
}

} // namespace tabwright::crashreport
