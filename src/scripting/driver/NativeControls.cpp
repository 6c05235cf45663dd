// The switch is a checkbox of chrome://accessibility, ticked by code in a hidden page of our own. That page takes a
// while to be ready, so it is asked again until the box is ticked.
#include "scripting/driver/NativeControls.h"

#include "platform/JSONReader.h"
#include "scripting/driver/DriverFault.h"

#include <chrono>
#include <string>

namespace tabwright::scripting {

using devtools::Session;
using namespace std::chrono_literals;

namespace {

constexpr auto patienceWithPage = 5s; // its script needs some 0.7 s
constexpr auto controlsPause = 20ms;

// A click before the page's own script has run would be lost, and the page is complete only when it has.
constexpr const char* switchOn = R"((() => {
  const native = document.querySelector("#native");
  if (!native || document.readyState !== "complete")
    return "loading";
  if (native.checked)
    return "on";
  native.click();
  return native.checked ? "clicked" : "loading";
})())";

} // namespace

void NativeControls::show(const platform::CallLimits& callLimits) {
  const platform::CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  const devtools::Turn::Holder holder = showing_.take("the browser is being told to show its controls", limits);
  {
    const platform::MutexLock lock(mutex_);
    if (page_ && page_->isAttached())
      return;
  }
  const boost::json::value reply = connection_->call(
      "Target.createTarget", {{"url", "chrome://accessibility"}, {"hidden", true}, {"background", true}}, {}, limits);
  const auto target = platform::JSONReader(reply).require<std::string>("targetId");
  std::shared_ptr<Session> page = Session::attach(connection_, target, Session::Kind::page, limits);
  // A page without the switch is never ready, and must not cost the caller all its time.
  const platform::CallLimits patience = limits.within(patienceWithPage);
  while (page->evaluate(switchOn, patience).value != boost::json::value("on")) {
    if (patience.hasPassed())
      throw platform::failure(DriverFault::refused, "its page chrome://accessibility has no switch for it");
    devtools::pause(controlsPause, "the browser is being told to show its controls", limits);
  }
  const platform::MutexLock lock(mutex_);
  page_ = std::move(page);
}

} // namespace tabwright::scripting
