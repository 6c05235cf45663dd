use AppleScript version "2.4"
use scripting additions
use framework "Foundation"
property CA : a reference to current application
property NSJSONSerialization : a reference to CA's NSJSONSerialization
property NSMutableDictionary : a reference to CA's NSMutableDictionary
property NSString : a reference to CA's NSString
on runWithVariables(a, b)
tell application id "com.google.chrome"
if (count of windows) is 0 then
return my failure(2)
end if
set x to 1 -- note
set y to "__BROWSER_BUNDLE_ID__ __ARGKEYS__"
set js to "
return my success(1)"
if b is "" then return my success({})
return my success(my getListOfTabs())
end tell
return my failure(0)
end
