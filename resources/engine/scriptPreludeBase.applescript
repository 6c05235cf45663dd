use AppleScript version "2.4"
use scripting additions
use framework "Foundation"

property CA : a reference to current application
property NSJSONSerialization : a reference to CA's NSJSONSerialization
property NSMutableDictionary : a reference to CA's NSMutableDictionary
property NSString : a reference to CA's NSString

on runWithVariables(__ARGKEYS__)
  tell application id "__MAIN_RECEIVER_ID__"
    __APPLESCRIPT__
  end tell
  return failure(0)
end

on success(listOfReturnValues)
  return {true, getBrowserVersionString(), jsonStringify(listOfReturnValues)}
end success

on failure(appleScriptRuntimeErrorValue)
  return {false, getBrowserVersionString(), appleScriptRuntimeErrorValue}
end failure

on jsonStringify(dataStructure)
  set currentApp to current application
  set utf8 to NSUTF8StringEncoding of currentApp
  set ds to my replaceNullsWithMissingValues(dataStructure)
  set jsonData to NSJSONSerialization's dataWithJSONObject:ds options:5 |error|:(missing value)
  set jsonString to NSString's alloc()'s initWithData:jsonData encoding:utf8
  return jsonString as text
end jsonStringify

on replaceNullsWithMissingValues(input)
  if class of input is list then
    return my replaceNullsInList(input)
  else if class of input is record then
    return my replaceNullsInRecord(input)
  else if input is null then
    return missing value
  else
    return input
  end if
end replaceNullsWithMissingValues

on replaceNullsInList(input)
  set modifiedList to {}
  repeat with listItem in input
    if my isNull(listItem) then
      set end of modifiedList to missing value
    else if class of listItem is record then
      set modifiedList to modifiedList & {replaceNullsInRecord(listItem)}
    else if class of listItem is list then
      set modifiedList to modifiedList & {replaceNullsInList(listItem)}
    else
      set end of modifiedList to listItem
    end if
  end repeat
  return modifiedList
end replaceNullsInList

on replaceNullsInRecord(input)
  set dict to NSMutableDictionary's dictionaryWithDictionary:input
  repeat with dictKey in dict's allKeys()
    set v to (dict's valueForKey:dictKey)
    if my isNull(v) then
      (dict's setValue:(missing value) forKey:dictKey)
    else if class of v is record then
      (dict's setValue:(my replaceNullsInRecord(v)) forKey:dictKey)
    end if
  end repeat
  return dict as record
end replaceNullsInRecord

on isNull(var)
  try
    return var is not "null" and var as text is "null"
  on error
    return false
  end try
end isNull

on splitString(inputString, delimiter)
  return ((NSString's stringWithString:inputString)'s componentsSeparatedByString:delimiter) as list
end splitString

on makeDetailedBrowserTabDataForID(tabID) --> BrowserTabData | null
  tell application id "__BROWSER_BUNDLE_ID__"
    set nativeObjects to my findNativeTabAndWindowForTabID(tabID)
    if nativeObjects is missing value or nativeObjects is null then
      return null
    end if
    set {nativeTab, nativeWindow} to nativeObjects
    set browserTabData to my makeBrowserTabData(nativeTab, nativeWindow, null)
    set pageSelectionText of browserTabData to my executeJavascriptInTab("window.getSelection().toString()", nativeTab)
    set pageSelectionHTML of browserTabData to my executeJavascriptInTab("(()=>{const e=window.getSelection();if(!e||e.rangeCount===0)return'';const n=document.createElement('div');for(let t=0;t<e.rangeCount;t++){const o=e.getRangeAt(t).cloneContents();n.appendChild(o)}return n.querySelectorAll('a[href^=\"/\"]').forEach(t=>{t.href=new URL(t.href||'',window.location.href).href}),n.querySelectorAll('img[src^=\"/\"]').forEach(t=>{t.src=new URL(t.src||'',window.location.href).href}),n.innerHTML})()", nativeTab)
    set htmlContent of browserTabData to my executeJavascriptInTab("document.documentElement.outerHTML", nativeTab)
    set textContent of browserTabData to my executeJavascriptInTab("document.body.innerText", nativeTab)
  end tell
  return browserTabData
end makeDetailedBrowserTabDataForID

on findNativeWindowWithID(windowID) --> window | null
  try
    tell application id "__BROWSER_BUNDLE_ID__"
      return window id windowID
    end tell
  on error
    return null
  end try
end findNativeWindowWithID

on waitForTabReadyState(nativeTab, readyState) --> success()
  set timeoutInSeconds to 20
  set intervalInSeconds to 0.5
  set timeSpentInSeconds to 0
  if readyState is "interactive" then
    set readyStates to {"interactive", "complete"}
  else
    set readyStates to {"complete"}
  end if
  repeat until timeSpentInSeconds >= timeoutInSeconds
    if (my executeJavascriptInTab("document.readyState", nativeTab)) is in readyStates
      return my success(true)
    end if
    delay intervalInSeconds
    set timeSpentInSeconds to timeSpentInSeconds + intervalInSeconds
  end repeat
  return my success(false)
end waitForTabReadyState

