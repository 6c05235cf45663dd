#include "connect/HelperParts.h"

#include "ConnectedHelper.h"
#include "connect/ConnectFault.h"

#include <system_error>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;

} // namespace

HelperParts findHelperParts(const fs::path& program) {
  const fs::path beside = program.parent_path();
  // PREFIX/libexec/tabwright/tabwright-host
  const fs::path installed = beside.parent_path().parent_path() / "share" / "tabwright";
  std::error_code ignored;
  const fs::path folder = fs::exists(beside / connectedhelper::packageFile, ignored) ? beside : installed;
  HelperParts parts{.identity = std::string(connectedhelper::identity),
                    .version = std::string(connectedhelper::version),
                    .relayName = std::string(connectedhelper::relayName),
                    .package = folder / connectedhelper::packageFile,
                    .unpacked = folder / connectedhelper::unpackedFolder,
                    .relay = beside / connectedhelper::relayProgram};
  for (const fs::path& part : {parts.relay, parts.package, parts.unpacked}) {
    if (!fs::exists(part, ignored))
      throw platform::failure(ConnectFault::incomplete, part.string());
  }
  return parts;
}

} // namespace tabwright::connect
