#pragma once

#include "scripting/browser/BrowserApplication.h"

namespace tabwright::scripting {

/// Safari's published dictionary over any BrowserDriver.
///
/// It differs from the other family: the id of a window is a number, a tab has none and is named by its position
/// (`tab 3 of window id 12345`), windows without tabs are not listed, the title is the window's `name`, and an empty
/// address is `missing value`. Whether a window is private can't be asked. Documents stand for windows, one each, with
/// the page of the current tab.
class SafariApplication final : public BrowserApplication {
public:
  /// `facts` is copied from. Nothing is connected to before the first event that needs the browser.
  SafariApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver,
                    BrowserHooks hooks = {});

private:
  /// do JavaScript, make, close and delete; −1708 for any other.
  applescript::Value perform(BrowserScope& scope) override;
};

} // namespace tabwright::scripting
