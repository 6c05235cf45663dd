// `tabwright-host`, as far as tests of its reports need it, with the address of a test's own collector.
#include "app/ErrorReports.h"
#include "app/HostProcess.h"
#include "client/HostProtocol.h"

#include <cstdlib>
#include <string_view>

int main(int argumentCount, char** arguments) {
  const char* const given = std::getenv("TABWRIGHT_TEST_REPORT_DSN");
  const std::string_view address = given ? given : "";
  const std::string_view command = argumentCount > 1 ? arguments[1] : "";
  if (argumentCount == 3 && command == tabwright::client::handover::command)
    return tabwright::app::runHost(arguments[2], address);
  if (argumentCount == 2 && command == tabwright::app::sendReportsCommand)
    return tabwright::app::sendReports(address);
  return 2;
}
