#pragma once

#include "crashreport/Dsn.h"
#include "crashreport/ReportSpool.h"
#include "platform/CallLimits.h"
#include "platform/Clock.h"

#include <chrono>
#include <string>

namespace tabwright::crashreport {

/// Sends what waits in a spool to a collector, one report after the other, oldest first. First the records of crashed
/// processes become envelopes.
///
/// A report goes as soon as the collector has taken it (2xx) or will never take it (4xx but 429), and so does a record
/// that can't be read. The first that meets anything else, a silent or missing collector included, ends the sending;
/// it and those behind it wait for the next one. A collector that asks for time (429 or Retry-After) gets it, a minute
/// where it doesn't say how much, a day at most: the spool remembers that.
///
/// While one process sends, others that want to send from the same spool leave it to that.
class ReportSender {
public:
  struct Surroundings {
    ReportSpool& spool;
    Dsn dsn;
    std::string client; ///< who sends, as in "tabwright/0.1.0"
    const platform::Clock& clock;
    std::chrono::milliseconds answerPatience = std::chrono::seconds(10);
  };

  explicit ReportSender(Surroundings surroundings);

  /// Throws `platform::FileFailure` when the spool can't be used. Ends by the deadline of the limits, which is looked
  /// at before each report, so it may take `answerPatience` longer.
  void send(const platform::CallLimits& limits);

private:
  struct Answer {
    bool isDoneWith = false;    ///< the report, whether it was taken or not
    bool isNextWelcome = false; ///< another one may follow now
  };

  void convertCrashes();
  [[nodiscard]] Answer post(const std::string& envelope);
  [[nodiscard]] bool isAskedToWait() const;
  void waitFor(std::chrono::seconds pause);
  [[nodiscard]] double now() const { return surroundings_.clock.secondsSinceReferenceDate(); }

  const Surroundings surroundings_;
};

} // namespace tabwright::crashreport
