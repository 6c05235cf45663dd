// The English sentences are the keys of their translations.
#include "updates/UpdateFault.h"

#include "platform/FailureTable.h"
#include "updates/UpdateText.h"

namespace tabwright::updates {
namespace {

using enum UpdateFault;
constexpr platform::FailureTable<UpdateFault, 16> updateFaults{
    "UpdateFault",
    {
        {insecureAddress, "insecureAddress",
         "Updates are taken by https alone, and from nowhere that such an address leads to without it: %1$@"},
        {unreachable, "unreachable", "The server of updates could not be reached: %1$@."},
        {refused, "refused", "The server of updates did not give what was asked for: it answered with status %1$@."},
        {timedOut, "timedOut", "The server of updates took too long."},
        {stopped, "stopped", "The update was stopped."},
        {tooLong, "tooLong", "The server of updates sent more than the %1$@ bytes that are taken."},
        {truncated, "truncated", "The download is not complete: %1$@ bytes came."},
        {malformedFeed, "malformedFeed", "The list of updates can’t be read: %1$@."},
        {unusableKey, "unusableKey", "This build can’t check updates: its key is no Ed25519 key."},
        {unsignedArchive, "unsignedArchive", "The update is not signed, so it is not installed."},
        {wronglySigned, "wronglySigned",
         "The update is not signed by the makers of this build, so it is not installed."},
        {brokenArchive, "brokenArchive", "The update’s archive can’t be read: %1$@."},
        {unsafeArchive, "unsafeArchive", "The update’s archive is not safe to unpack: %1$@."},
        {unfitProgram, "unfitProgram", "The update is not installed: %1$@."},
        {notOurs, "notOurs", "%1$@"},
        {busy, "busy", "This copy is being updated by another process."},
    }};

} // namespace

std::string errorDescription(UpdateFault fault, const std::string& detail) {
  return updateText(updateFaults[fault].sentence, {detail});
}

platform::FailureIdentity identity(UpdateFault fault) {
  return updateFaults.identity(fault);
}

} // namespace tabwright::updates
