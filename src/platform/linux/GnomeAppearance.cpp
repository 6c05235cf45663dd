#include "platform/linux/GnomeAppearance.h"

#include "platform/DesktopFault.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>

namespace tabwright::platform {

namespace {

/// The command's output, without the line's end. Throws with its complaint where it fails.
std::string settings(const std::string& words) {
  // The words are all this file's own. C's locale, since the answer is compared and complaints go into a sentence in
  // English.
  std::FILE* pipe = popen(("LC_ALL=C timeout 5 gsettings " + words + " 2>&1").c_str(), "re");
  if (pipe == nullptr)
    throw failure(DesktopFault::noAppearance, "no command can be run");
  std::string told;
  std::array<char, 256> part{};
  while (std::fgets(part.data(), part.size(), pipe) != nullptr)
    told += part.data();
  const int status = pclose(pipe);
  told.erase(told.find_last_not_of(" \n") + 1);
  if (status != 0)
    throw failure(DesktopFault::noAppearance, told.empty() ? "gsettings fails" : told);
  return told;
}

} // namespace

bool GnomeAppearance::isDark() {
  // Printed as GVariant text, which puts quotes around it.
  return settings("get org.gnome.desktop.interface color-scheme") == "'prefer-dark'";
}

void GnomeAppearance::setDark(bool isDark) {
  settings(std::string("set org.gnome.desktop.interface color-scheme ") + (isDark ? "prefer-dark" : "default"));
}

} // namespace tabwright::platform
