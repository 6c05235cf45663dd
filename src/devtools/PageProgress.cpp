// A count in place of a flag: departures only go up, and each way of settling them says up to which count it settles.
// So a navigation that begins while an earlier one is being waited for isn't taken for settled together with it. Events
// of frames within the page are passed over, since a navigation there leaves the page where it is.
#include "devtools/PageProgress.h"

#include <algorithm>
#include <string_view>

namespace tabwright::devtools {

namespace {

std::string textOf(const platform::JSONReader& fields, std::string_view key) {
  return fields.find<std::string>(key).value_or("");
}

/// Opened elsewhere, or handed to a download: the page stays.
bool staysHere(const Event& event) {
  return textOf(event.parameters, "disposition") != "currentTab";
}

bool isWithinDocument(const Event& event) {
  const std::string type = textOf(event.parameters, "navigationType");
  return type == "sameDocument" || type == "historySameDocument";
}

} // namespace

bool PageProgress::isOfMainFrame(const Event& event) const {
  return textOf(event.parameters, "frameId") == mainFrame_;
}

bool PageProgress::take(const Event& event) {
  if (event.method == "Page.frameRequestedNavigation") {
    if (isOfMainFrame(event) && !staysHere(event))
      ++departures_;
  } else if (event.method == "Page.frameStartedNavigating") {
    if (isOfMainFrame(event) && !isWithinDocument(event)) {
      begunAt_ = ++departures_;
      isUnderWay_ = true;
      loader_ = textOf(event.parameters, "loaderId");
      destination_ = textOf(event.parameters, "url");
    }
  } else if (event.method == "Page.frameStoppedLoading") {
    // A navigation that was dropped ends so. A page that is restored says the same before it is there, so this alone
    // settles nothing.
    if (isOfMainFrame(event) && isUnderWay_) {
      isUnderWay_ = false;
      ++departures_;
    }
  } else if (event.method == "Page.windowOpen") {
    ++departures_; // of the tab that is about to be there
  } else if (event.method == "Page.frameNavigated") {
    takeDocument(event);
  } else if (event.method == "Page.domContentEventFired") {
    isParsed_ = true;
    knowsDocument_ = true;
  } else {
    return false;
  }
  return true;
}

void PageProgress::takeDocument(const Event& event) {
  const auto frame = event.parameters.require<platform::JSONReader>("frame");
  // Only frames within another one have a parent.
  if (frame.object().contains("parentId"))
    return;
  // It need not stay that of the target.
  mainFrame_ = frame.require<std::string>("id");
  // A page from the back/forward cache was parsed when it was left: no further event tells of its end.
  const bool isRestored = textOf(event.parameters, "type") == "BackForwardCacheRestore";
  isParsed_ = isRestored;
  isErrorPage_ = frame.object().contains("unreachableUrl");
  knowsDocument_ = true;
  // A document of an earlier navigation may still arrive after a later one has begun; it settles nothing.
  if (isRestored || textOf(frame, "loaderId") == loader_) {
    isUnderWay_ = false;
    settled_ = std::max(settled_, begunAt_);
  }
}

void PageProgress::answered(std::uint64_t departures) {
  settled_ = std::max(settled_, departures);
}

} // namespace tabwright::devtools
