#pragma once

#include "connect/ConnectionState.h"
#include "connect/HelperParts.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::connect {

/// One thing that a user may do about a browser, as a sentence or two.
struct Advice {
  enum class Kind {
    sandboxed,    ///< it can't be connected
    install,      ///< the helper is not installed
    renew,        ///< its files are not those of this copy of the program
    start,        ///< the browser does not run
    restart,      ///< it runs, and takes the helper in at its next start
    look,         ///< it has started since the helper was installed, but the helper isn't there
    loadByHand,   ///< the user has removed the helper in that profile
    allowScripts, ///< a switch is off without which no script runs in a page
    allowPrivate, ///< a switch is off without which private windows are invisible
    allowFiles,   ///< a switch is off without which pages of files are out of reach
    mendHelper,   ///< the helper is there, but can't be spoken to
  };
  Kind kind;
  std::string sentence;
};

/// All that is to be done until the browser can be driven in full, in the order in which it is done. Empty when nothing
/// is.
[[nodiscard]] std::vector<Advice> adviceFor(const ConnectionState& state, const HelperParts& parts);

/// The name of a kind for programs, which stays however sentences are worded.
[[nodiscard]] std::string_view nameOf(Advice::Kind kind);

/// A profile as users know it: `the profile “Work” of Chromium`; `a profile of Chromium` where it isn’t known.
[[nodiscard]] std::string nameOf(const ProfileState& profile, const platform::BrowserFacts& browser);

} // namespace tabwright::connect
