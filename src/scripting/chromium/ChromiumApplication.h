#pragma once

#include "scripting/browser/BrowserApplication.h"

namespace tabwright::scripting {

/// A browser of the Chromium family as scripts see it: the family's published dictionary over any BrowserDriver.
///
/// Ids of windows and tabs are texts ("8"), so that a script can compare them with the text ids it was given. A
/// developer tools window is listed, has no tabs, and the active tab index 0.
///
///     auto browser = std::make_shared<ChromiumApplication>(*findBrowser("chromium"), driver);
///     // tell application "Chromium" to URL of active tab of window 1   → "https://example.com/"
class ChromiumApplication final : public BrowserApplication {
public:
  /// `facts` is copied from. Nothing is connected to before the first event that needs the browser.
  ChromiumApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver,
                      BrowserHooks hooks = {});

private:
  /// execute, make, close, delete, reload, stop, go back, go forward, open and open location; −1708 for any other.
  applescript::Value perform(BrowserScope& scope) override;
};

} // namespace tabwright::scripting
