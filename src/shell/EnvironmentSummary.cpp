#include "shell/EnvironmentSummary.h"

#include "platform/Whitespace.h"
#include "shell/Varn.h"

#include <fmt/core.h>

#include <cctype>
#include <sys/utsname.h>

namespace tabwright::shell {

std::string operatingSystem() {
  utsname names{};
  if (::uname(&names) != 0)
    return "Linux";
  // Distributions put words of their own behind the third number.
  std::string_view release = names.release;
  release = release.substr(0, release.find_first_not_of("0123456789."));
  return fmt::format("{} {}", names.sysname, release);
}

std::string environmentSummary(std::string_view system, std::string_view browserVersions) {
  const std::string text = fmt::format("{} {}\n{}, {}", Varn::App::name, Varn::App::release(), system, browserVersions);
  return std::string(platform::trimmingWhitespaceAndNewlines(text));
}

} // namespace tabwright::shell
