#pragma once

#include "devtools/Connection.h"

#include <cstdint>
#include <string>

namespace tabwright::devtools {

/// The state of a page's navigations as its own events tell it: whether its main frame is on its way to another
/// document, and whether the document that it shows is there as far as its end.
///
/// A departure is anything that may lead to another document: a navigation that the page asks for, one that begins, and
/// a command of ours. Navigations within the document are none. Departures are counted; one is settled once it has led
/// to a document, or once the page has answered a call that was sent after it (`answered`), since the browser hands a
/// page that is leaving nothing more.
///
/// Not safe to use from several threads.
class PageProgress {
public:
  /// `mainFrame` is the frame's id, which at first is that of the target.
  explicit PageProgress(std::string mainFrame) : mainFrame_(std::move(mainFrame)) {}

  /// True for an event that speaks of navigations.
  bool take(const Event& event);
  /// A command of ours that may make the page leave.
  void depart() { ++departures_; }
  /// The page has answered a call that was sent when there had been that many departures.
  void answered(std::uint64_t departures);
  /// Takes what a document that was there before the first event says of itself.
  void found(bool isParsed, bool isErrorPage) {
    isParsed_ = isParsed;
    isErrorPage_ = isErrorPage;
  }

  /// Nobody waits for the end of this document any longer.
  void countAsParsed() { isParsed_ = true; }

  /// The count so far, to be remembered when a call is sent and handed to `answered` when the page has answered it.
  [[nodiscard]] std::uint64_t departures() const { return departures_; }
  /// True while a navigation has begun whose end has not been reported.
  [[nodiscard]] bool isUnderWay() const { return isUnderWay_; }
  /// The address that the last navigation has begun with.
  [[nodiscard]] const std::string& destination() const { return destination_; }
  /// True once the shown document is parsed to its end (DOMContentLoaded), or was counted so.
  [[nodiscard]] bool isParsed() const { return isParsed_; }
  /// True when no departure is open: each has led to a document, or the page has answered since.
  [[nodiscard]] bool isSettled() const { return settled_ == departures_ && !isUnderWay_; }
  /// True when the document is the browser's own, in place of one that could not be loaded.
  [[nodiscard]] bool isErrorPage() const { return isErrorPage_; }
  /// True once any event has told of the document.
  [[nodiscard]] bool knowsDocument() const { return knowsDocument_; }

private:
  [[nodiscard]] bool isOfMainFrame(const Event& event) const;
  void takeDocument(const Event& event);

  std::string mainFrame_;
  std::string loader_; // of the navigation that began last
  std::string destination_;
  bool isUnderWay_ = false;
  bool isParsed_ = true;
  bool isErrorPage_ = false;
  bool knowsDocument_ = false;
  std::uint64_t departures_ = 0;
  std::uint64_t begunAt_ = 0; // the count of departures when the last navigation began
  std::uint64_t settled_ = 0; // the count of departures up to which all are settled
};

} // namespace tabwright::devtools
