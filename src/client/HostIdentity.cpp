// A hash of the surroundings: FNV-1a in its 64-bit form (http://www.isthe.com/chongo/tech/comp/fnv/). It only keeps
// honest processes of one user apart.
#include "client/HostIdentity.h"

#include "client/HostUnavailable.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::client {
namespace {

constexpr const char* variables[]{
    "HOME",
    "XDG_CONFIG_HOME",
    "XDG_DATA_HOME",
    "XDG_STATE_HOME",
    "XDG_RUNTIME_DIR",
    "XDG_DATA_DIRS",
    "DISPLAY",
    "XAUTHORITY",
    "WAYLAND_DISPLAY",
    "DBUS_SESSION_BUS_ADDRESS",
    "AT_SPI_BUS_ADDRESS",
    "LANGUAGE",
    "LC_ALL",
    "LC_MESSAGES",
    "LANG",
    "TZ",
    "PATH",
};

class Hash {
public:
  // The end of each text counts, so that no two lists of texts run into one another.
  void add(std::string_view text) {
    for (const char character : text)
      add(static_cast<unsigned char>(character));
    add(unsigned{0});
  }
  void add(unsigned byte) { value_ = (value_ ^ byte) * 1099511628211U; }

  [[nodiscard]] std::string digits() const {
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4)
      text += "0123456789abcdef"[value_ >> shift & 15U];
    return text;
  }

private:
  std::uint64_t value_ = 14695981039346656037U;
};

} // namespace

std::string programPath() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || length == static_cast<ssize_t>(sizeof path))
    throw HostUnavailable(std::string("The program’s own place isn’t known: /proc/self/exe: ") + std::strerror(errno));
  return {path, static_cast<std::size_t>(length)};
}

std::string hostIdentity(const std::string& programPath) {
  Hash hash;
  hash.add(programPath);
  for (const char* name : variables) {
    const char* value = std::getenv(name);
    hash.add(value ? std::string_view(value) : std::string_view("\xff", 1)); // which no variable set is likely to be
  }
  // umask(2) tells the mask only by changing it; this process has one thread, which puts it back.
  const mode_t mask = ::umask(077);
  ::umask(mask);
  hash.add(std::to_string(mask));
  return hash.digits();
}

} // namespace tabwright::client
