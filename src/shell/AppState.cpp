#include "shell/AppState.h"

#include "platform/Whitespace.h"

#include <string>

namespace tabwright::shell {

AppState::AppState(const Application& application, const DefaultsKeys& keys)
    : isAppRunningHidden(application.isHidden()), keys_(keys) {
  checkWhatsNew();
}

void AppState::checkWhatsNew() {
  const std::string seen = keys_.seenWhatsNewWithChecksum.get();
  // A first launch: all is new to its user, so this text counts as read.
  if (platform::isBlank(seen))
    keys_.seenWhatsNewWithChecksum.updateSoon([](const std::string&) { return std::string(whatsNewChecksum); });
  else if (seen != whatsNewChecksum)
    selectedSheet.set(RootViewSheet::whatsNew);
}

void AppState::markWhatsNewAsRead() {
  keys_.seenWhatsNewWithChecksum.updateSoon([](const std::string&) { return std::string(whatsNewChecksum); });
  selectedSheet.set(RootViewSheet::none);
}

} // namespace tabwright::shell
