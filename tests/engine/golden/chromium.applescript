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
tell application id "com.google.chrome"
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
tell application id "com.google.chrome"
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
on makeBrowserWindowData(nativeWindow) --> BrowserWindowData
set browserWindowData to {activeTab:"", activeTabID:"", activeTabIndex:0, isPrivate:false, isVisible:false, tabsList:{}, windowID:"", windowIndex:0, windowTitle:""}
tell application id "com.google.chrome"
tell nativeWindow
set _isPrivate to mode is "incognito"
set activeTab of browserWindowData to my makeBrowserTabData(active tab, nativeWindow, _isPrivate)
set activeTabID of browserWindowData to id of active tab as text
set activeTabIndex of browserWindowData to active tab index
set isPrivate of browserWindowData to _isPrivate
set isVisible of browserWindowData to visible
set tabsList of browserWindowData to {}
set windowID of browserWindowData to id as text
set windowIndex of browserWindowData to index
set windowTitle of browserWindowData to title
repeat with nativeTab in tabs
set end of tabsList of browserWindowData to my makeBrowserTabData(nativeTab, nativeWindow, _isPrivate)
end repeat
end tell
end tell
return browserWindowData
end makeBrowserWindowData
on makeBrowserTabData(nativeTab, nativeParentWindow, isParentWindowPrivate) --> BrowserTabData
set browserTabData to {htmlContent:"", isLoading:false, isPrivate: false, pageSelectionText:"", pageSelectionHTML: "", tabID:"", tabTitle:"", tabURL:"", textContent:""}
tell application id "com.google.chrome"
if isParentWindowPrivate is missing value or isParentWindowPrivate is null then
set isParentWindowPrivate to mode of nativeParentWindow is "incognito"
end if
tell nativeTab
set isLoading of browserTabData to loading
set isPrivate of browserTabData to isParentWindowPrivate
set tabID of browserTabData to id as text
set tabTitle of browserTabData to name
set tabURL of browserTabData to URL
end tell
end tell
return browserTabData
end makeBrowserTabData
on getFrontVars() --> {Window, text, Tab, text}
tell application id "com.google.chrome"
set FRONT_WINDOW to my __getFrontWindow()
set FRONT_WINDOW_ID to id of FRONT_WINDOW
set FRONT_TAB to active tab of FRONT_WINDOW
set FRONT_TAB_ID to id of FRONT_TAB
return {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID}
end tell
end getFrontVars
on __getFrontWindow() --> Window
tell application id "com.google.chrome"
return first window whose active tab index > 0
end tell
end __getFrontWindow
on getListOfWindows() --> [BrowserWindowData]
set windowList to {}
tell application id "com.google.chrome"
repeat with nativeWindow in (windows whose active tab index > 0)
set windowData to my makeBrowserWindowData(nativeWindow)
if windowData is not missing value and windowData is not null then
set end of windowList to windowData
end if
end repeat
end tell
return windowList
end getListOfWindows
on getListOfTabs() --> [BrowserTabData]
set tabsList to {}
tell application id "com.google.chrome"
repeat with nativeWindow in windows
set isPrivateWindow to (mode of nativeWindow is "incognito")
repeat with nativeTab in (every tab of nativeWindow)
set end of tabsList to my makeBrowserTabData(nativeTab, nativeWindow, isPrivateWindow)
end repeat
end repeat
end tell
return tabsList
end getListOfTabs
on findNativeTabAndWindowForTabID(tabID) --> {Tab, Window} | null
tell application id "com.google.chrome"
repeat with nativeWindow in windows
repeat with nativeTab in every tab in nativeWindow
if id of nativeTab is tabID then
return {nativeTab, nativeWindow}
end if
end repeat
end repeat
end tell
return null
end findNativeTabAndWindowForTabID
on createTabInWindow(nativeWindow, newURL) --> void
tell application id "com.google.chrome"
set newTab to make tab in nativeWindow
if newURL is not missing value and newURL is not null then
set URL of newTab to newURL
end if
return newTab
end tell
end createTabInWindow
on focusTabAndWindow(nativeTab, nativeWindow) --> void
tell application id "com.google.chrome"
set idx to 1
repeat with childTab in tabs of nativeWindow
if id of childTab is id of nativeTab then
set active tab index of nativeWindow to idx
set index of nativeWindow to 1
activate
return
end if
set idx to idx + 1
end repeat
end tell
end focusTabAndWindow
on getBrowserVersionString() --> String
tell application id "com.google.chrome"
if (count of windows) is 0 then
return ""
end if
tell active tab of my __getFrontWindow()
return execute javascript "navigator.userAgentData?.brands.find(b => b.brand === 'Chromium')?.version || navigator.userAgent.match(/Chrome\\/(\\d+)/)?.[1] || ''"
end tell
end tell
return ""
end getBrowserVersionString
on executeJavascriptInTab(js, nativeTab) --> String
tell application id "com.google.chrome"
tell nativeTab
return execute javascript js
end tell
end tell
end executeJS