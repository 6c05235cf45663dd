use AppleScript version "2.4"
use scripting additions

on __MAIN_HANDLER__()
  set bundleID to "__BUNDLE_ID__"
  try
    -- Note if app is running
    tell application "System Events"
      set isAlreadyRunning to (count (every process whose bundle identifier is bundleID)) > 0
    end tell

    -- Start the browser if necessary
    if not isAlreadyRunning then
      tell application id bundleID to activate
      delay 1
    end if

    -- Do the things that'll trigger the permissions dialog
    tell application "System Events"
      set appName to name of (first application process whose bundle identifier is bundleID)
      tell process appName
        set frontmost to true
        get menu item 1 of menu 1 of menu bar 1
      end tell
    end tell
    tell application id bundleID
      set tmp to id of first window
    end tell

    delay 1

    -- Quit the browser if it was started by this script
    if not isAlreadyRunning then
      tell application id bundleID to quit
    end if

  on error errMsg
  end try

  -- Return to Tabwright
  tell application "__APPLICATION_NAME__" to activate

  return {true, "", "true"}
end
