// `tabwright-host`: all that the thin client `tabwright` doesn't do itself.
#include "app/CommandLine.h"
#include "app/ErrorReports.h"
#include "app/HostProcess.h"
#include "client/HostProtocol.h"

#include <cstdlib>
#include <malloc.h>
#include <string_view>
#include <sys/resource.h>

namespace {

// Many connections need many descriptors, and what this process may have it may take by itself.
void takeAllDescriptors() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
    return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

int main(int argumentCount, char** arguments) {
  takeAllDescriptors();
  if (argumentCount == 3 && std::string_view(arguments[1]) == tabwright::client::handover::command) {
    ::mallopt(M_ARENA_MAX, 2); // memory that one thread is done with is of use to the others
    // JavaScriptCore checks syntax here and runs nothing; to prepare its compilers costs 2 MB. It reads this when it is
    // first used, but the environment may be changed only while there is one thread. Of the programs that the host
    // starts none has a use for it.
    ::setenv("JSC_useJIT", "0", 0);
    ::setenv("JSC_useConcurrentGC", "0", 0);
    return tabwright::app::runHost(arguments[2]);
  }
  if (argumentCount == 2 && arguments[1] == tabwright::app::sendReportsCommand)
    return tabwright::app::sendReports();
  // Memory that a page's conversion or a long list needed is kept for the next one: to give it back to the system and
  // take it again costs as much as the work itself.
  ::mallopt(M_TRIM_THRESHOLD, 16 << 20);
  ::mallopt(M_MMAP_THRESHOLD, 4 << 20);
  return tabwright::app::runCommandLine(argumentCount, arguments);
}
