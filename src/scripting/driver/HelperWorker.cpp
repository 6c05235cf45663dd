// Finding the worker goes from cheap to dear: the session we have; a running worker; waking a worker that is installed
// but asleep (a few milliseconds); loading the helper (some 80 ms), under a lock that holds between processes, and only
// after looking again. A worker is taken once its script has run and its version is not older than ours.
#include "scripting/driver/HelperWorker.h"

#include "devtools/Targets.h"
#include "platform/JSONText.h"
#include "platform/Logger.h"
#include "scripting/driver/BrowserDriver.h"

#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <sys/file.h>
#include <unistd.h>
#include <vector>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;
using platform::JSONReader;
using namespace std::chrono_literals;

namespace {

const platform::Logger helperLog("HelperWorker");

/// Follows from the public key in the helper's manifest: the first half of the key's SHA-256, hexadecimal digits as
/// a–p.
constexpr std::string_view helperID = "pjbehgeaikpfphapeepnoedabkdomakk";
// Between two looks at something that takes some tens of milliseconds.
constexpr auto helperPause = 5ms;
/// A worker answers in a millisecond. One that is being replaced may never, without a word.
constexpr auto patienceWithWorker = 1s;

std::string helperScope() {
  return fmt::format("chrome-extension://{}/", helperID);
}

std::string versionIn(const std::filesystem::path& directory) {
  std::ifstream in(directory / "manifest.json", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  try {
    const boost::json::value manifest = platform::parseJSON(text);
    return JSONReader(manifest).require<std::string>("version");
  } catch (const platform::Failure&) {
    throw platform::failure(DevToolsFault::refused, fmt::format("{} holds no helper", directory.string()));
  }
}

std::vector<int> numbersOf(const std::string& version) {
  std::vector<int> numbers;
  std::istringstream in(version);
  for (std::string part; std::getline(in, part, '.');)
    numbers.push_back(std::atoi(part.c_str()));
  return numbers;
}

/// Part by part, as numbers: 1.10 is newer than 1.9.
bool isOlder(const std::string& version, const std::string& than) {
  return numbersOf(version) < numbersOf(than);
}

/// A lock on the profile's directory that holds between processes and leaves nothing behind. Where it can't be had (the
/// directory can't be seen from here), two processes may load the helper twice, which costs time only.
class ProfileLock {
public:
  ProfileLock(const std::filesystem::path& directory, const platform::CallLimits& limits)
      : descriptor_(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    try {
      while (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        devtools::pause(helperPause, "the helper is being loaded by another process", limits);
    } catch (...) {
      ::close(descriptor_);
      throw;
    }
  }
  ~ProfileLock() {
    if (descriptor_ >= 0)
      ::close(descriptor_);
  }
  ProfileLock(const ProfileLock&) = delete;
  ProfileLock& operator=(const ProfileLock&) = delete;

private:
  int descriptor_;
};

std::vector<devtools::TargetInfo> targetsOf(devtools::Connection& connection, std::string_view type,
                                            const platform::CallLimits& limits) {
  return devtools::listTargets(connection, {boost::json::object{{"type", type}}}, limits);
}

} // namespace

HelperWorker::HelperWorker(std::shared_ptr<devtools::Connection> connection, HelperPlace place,
                           std::function<void()> onChange)
    : connection_(std::move(connection)), place_(std::move(place)), version_(versionIn(place_.directory)),
      onChange_(std::move(onChange)) {}

void HelperWorker::prepare(const platform::CallLimits& limits) {
  requireSession(limits);
}

boost::json::value HelperWorker::perform(std::string_view command, const boost::json::object& parameters, Repeat repeat,
                                         const platform::CallLimits& limits) {
  const std::string expression =
      fmt::format("tabwright.perform(\"{}\", {})", command, boost::json::serialize(parameters));
  devtools::Evaluation evaluation;
  for (int attempt = 1;; ++attempt) {
    try {
      evaluation = requireSession(limits)->evaluate(expression, limits);
      // A worker that is just starting has not run its script yet.
      const bool isStarting = evaluation.exception && evaluation.exception->find("not defined") != std::string::npos;
      if (!isStarting || attempt >= 3)
        break;
      const platform::MutexLock lock(mutex_);
      session_.reset();
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::targetGone)
        throw;
      // It may have been done or not: doing it again could open a second tab.
      if (repeat == Repeat::never)
        throw platform::failure(DriverFault::lost, "the helper in the browser ended in the middle of a command");
      if (attempt >= 3)
        throw platform::failure(DriverFault::lost, "the helper in the browser ends again and again");
    }
  }
  if (evaluation.exception)
    throw platform::failure(DriverFault::refused, *evaluation.exception);

  return valueOfHelper(std::move(evaluation.value), parameters);
}

std::shared_ptr<Session> HelperWorker::requireSession(const platform::CallLimits& callLimits) {
  const platform::CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  const devtools::Turn::Holder holder = turn_.take("the helper is being prepared", limits);
  {
    const platform::MutexLock lock(mutex_);
    if (session_ && session_->isAttached())
      return session_;
  }
  std::shared_ptr<Session> session = attachToRunning(limits);
  if (!session)
    session = wakeOrLoad(limits);
  session->bind("tabwrightChanged", [onChange = onChange_](const std::string&) { onChange(); });
  onChange_(); // what was seen before is of unknown age
  const platform::MutexLock lock(mutex_);
  session_ = session;
  return session;
}

/// The session of a worker that runs, of our version or a later one; null when there is none.
std::shared_ptr<Session> HelperWorker::attachToRunning(const platform::CallLimits& limits) {
  const std::string scope = helperScope();
  std::string target;
  for (const devtools::TargetInfo& worker : targetsOf(*connection_, "service_worker", limits)) {
    if (worker.url.starts_with(scope))
      target = worker.id;
  }
  if (target.empty())
    return nullptr;
  try {
    std::shared_ptr<Session> session = Session::attach(connection_, target, Session::Kind::worker, limits);
    // Empty until the worker's script has run to its end.
    const std::string question = "globalThis.tabwright ? chrome.runtime.getManifest().version : ''";
    for (;;) {
      const devtools::Evaluation version = session->evaluate(question, limits.within(patienceWithWorker));
      if (version.value.is_string() && !version.value.get_string().empty())
        return isOlder(std::string(version.value.get_string()), version_) ? nullptr : session;
      devtools::pause(helperPause, "the helper is starting", limits);
    }
  } catch (const DevToolsFailure& failure) {
    // It ended while we were at it.
    const bool isOver = failure.kind() == DevToolsFault::targetGone || failure.kind() == DevToolsFault::refused;
    const bool isMute = failure.kind() == DevToolsFault::timedOut && !limits.hasPassed();
    if (!isOver && !isMute)
      throw;
    helperLog.debug("The helper's worker {} is left: {}", target, failure.errorDescription());
    return nullptr;
  }
}

std::shared_ptr<Session> HelperWorker::wakeOrLoad(const platform::CallLimits& limits) {
  const ProfileLock lock(place_.profileDirectory, limits);
  if (std::shared_ptr<Session> session = attachToRunning(limits)) // another process was faster
    return session;
  if (isInstalled(limits)) {
    wake(limits);
    try {
      return awaitWorker(limits.within(3s));
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::timedOut)
        throw;
      helperLog.info("The helper does not wake; it is loaded anew.");
    }
  }
  load(limits);
  return awaitWorker(limits);
}

std::shared_ptr<Session> HelperWorker::awaitWorker(const platform::CallLimits& limits) {
  for (;;) {
    if (std::shared_ptr<Session> session = attachToRunning(limits))
      return session;
    devtools::pause(helperPause, "the helper is starting", limits);
  }
}

/// True when the browser has the helper, in our version or a later one. A browser that can't tell counts as without:
/// the helper is loaded again then, which also starts it.
bool HelperWorker::isInstalled(const platform::CallLimits& limits) {
  const devtools::PendingCall::Answer answer = connection_->send("Extensions.getExtensions", {})->await(limits);
  if (!answer)
    return false;
  const auto extensions = JSONReader(*answer).require<std::vector<JSONReader>>("extensions");
  for (const JSONReader& extension : extensions) {
    if (extension.require<std::string>("id") == helperID)
      return extension.require<bool>("enabled") && !isOlder(extension.require<std::string>("version"), version_);
  }
  return false;
}

/// Asks for the worker to be started, which only a page can: one of the browser's ordinary profile, since the helper
/// lives there and not in the private one; else one made for this, which is never shown.
void HelperWorker::wake(const platform::CallLimits& limits) {
  std::string page;
  const std::string ordinary =
      devtools::ordinaryContext(connection_->send("Target.getBrowserContexts", {})->await(limits));
  for (const devtools::TargetInfo& target : targetsOf(*connection_, "page", limits)) {
    if (!ordinary.empty() && target.context == ordinary)
      page = target.id;
  }
  bool isOurs = false;
  if (page.empty()) {
    page = devtools::createTarget(*connection_, {{"url", "about:blank"}, {"hidden", true}}, limits);
    isOurs = true;
  }
  try {
    // Attached as if to a worker: nothing here concerns the page or its dialogs.
    const std::shared_ptr<Session> session = Session::attach(connection_, page, Session::Kind::worker, limits);
    session->call("ServiceWorker.enable", {}, Session::AnsweredBy::browser, limits);
    session->call("ServiceWorker.startWorker", {{"scopeURL", helperScope()}}, Session::AnsweredBy::browser, limits);
  } catch (const DevToolsFailure& failure) {
    // The page was closed just now, or this browser has no such method: the caller has another way.
    if (failure.kind() != DevToolsFault::refused && failure.kind() != DevToolsFault::targetGone)
      throw;
  }
  if (isOurs)
    connection_->send("Target.closeTarget", {{"targetId", page}});
}

void HelperWorker::load(const platform::CallLimits& limits) {
  helperLog.info("Loading the helper from {}.", place_.directory.string());
  // The browser shows its private windows only to an extension that is enabled there.
  const boost::json::value reply = connection_->call(
      "Extensions.loadUnpacked", {{"path", place_.directory.string()}, {"enableInIncognito", true}}, {}, limits);
  if (JSONReader(reply).require<std::string>("id") != helperID)
    throw platform::failure(DevToolsFault::refused, "the helper has another id than expected");
}

} // namespace tabwright::scripting
