use AppleScript version "2.4"
use scripting additions
use framework "Foundation"
property CA : a reference to current application
property NSJSONSerialization : a reference to CA's NSJSONSerialization
property NSMutableDictionary : a reference to CA's NSMutableDictionary
property NSString : a reference to CA's NSString
on runWithVariables()
tell application id "com.apple.systemevents"
set inputText to "x"
keystroke inputText
end tell
return my failure(0)
end
