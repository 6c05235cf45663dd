#pragma once

#include "crashreport/ReportOptions.h"
#include "crashreport/ReportSpool.h"
#include "platform/linux/FileDescriptor.h"

#include <string>

namespace tabwright::crashreport {

/// Leaves a record (CrashRecord.h) in the spool when this process ends by SIGSEGV, SIGBUS, SIGFPE, SIGILL or SIGABRT,
/// in whichever thread.
///
/// All that the handler can't do safely is done here, ahead: the record is opened under a name that nobody takes for a
/// report, and the program's facts and modules are in it. The handler adds the signal and the stack, and renames it.
/// Then the signal goes on to what was there before, so exit status and core dump stay as they are; signals that were
/// ignored stay so. Libraries that are loaded later aren't known to the record.
///
/// A stack that has overflowed has no room for a handler: threads that may run deep call platform::ensureSignalStack.
/// The one who makes this gets one.
///
/// One at a time in a process. Not inherited by processes that are forked off.
class CrashHandler {
public:
  /// Throws `platform::FileFailure` when the record can't be made. The spool outlives this.
  CrashHandler(const ReportSpool& spool, const ProgramFacts& program);
  /// Puts back what was there before, and removes the record.
  ~CrashHandler();
  CrashHandler(const CrashHandler&) = delete;
  CrashHandler& operator=(const CrashHandler&) = delete;

private:
  const ReportSpool& spool_;
  const std::string pendingName_;
  const std::string crashName_;
  platform::FileDescriptor record_;
};

} // namespace tabwright::crashreport
