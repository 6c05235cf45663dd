use AppleScript version "2.4"
use scripting additions
use framework "Foundation"

property NSString : a reference to current application's NSString

on __MAIN_HANDLER__()
  tell application "System Events"
    set frontProcess to first application process whose frontmost is true
    set frontProcessBundleID to bundle identifier of frontProcess
    set frontProcessBundleID to ((NSString's stringWithString:frontProcessBundleID)'s lowercaseString()) as text

    -- Test if the app currently at the front is a supported browser
    tell frontProcess
      if frontProcessBundleID is in {__BROWSER_BUNDLE_IDS__} then
        return {true, "", "\"" & frontProcessBundleID & "\""}
      end
    end tell

    -- It's not a supported browser, so activate the previous frontmost app to get its bundle ID
    set visible of frontProcess to false
    delay 0.1
    set newfrontProcess to first application process whose frontmost is true
    set newfrontProcessBundleID to bundle identifier of newfrontProcess
    set newfrontProcessBundleID to ((NSString's stringWithString:newfrontProcessBundleID)'s lowercaseString()) as text
    delay 0.1

    -- We got the bundle ID, so re-activate the original frontmost process
    set visible of frontProcess to true
    activate frontProcess

    return {true, "", "\"" & newfrontProcessBundleID & "\""}
  end tell
end
