on makeBrowserWindowData(nativeWindow) --> BrowserWindowData
  set browserWindowData to {activeTab:"", activeTabID:"", activeTabIndex:0, isPrivate:false, isVisible:false, tabsList:{}, windowID:"", windowIndex:0, windowTitle:""}
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
    set FRONT_WINDOW to my __getFrontWindow()
    set FRONT_WINDOW_ID to id of FRONT_WINDOW
    set FRONT_TAB to active tab of FRONT_WINDOW
    set FRONT_TAB_ID to id of FRONT_TAB
    return {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID}
  end tell
end getFrontVars

on __getFrontWindow() --> Window
  tell application id "__BROWSER_BUNDLE_ID__"
    return first window whose active tab index > 0
  end tell
end __getFrontWindow

on getListOfWindows() --> [BrowserWindowData]
  set windowList to {}
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
    set newTab to make tab in nativeWindow
    if newURL is not missing value and newURL is not null then
      set URL of newTab to newURL
    end if
    return newTab
  end tell
end createTabInWindow

on focusTabAndWindow(nativeTab, nativeWindow) --> void
  tell application id "__BROWSER_BUNDLE_ID__"
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
  tell application id "__BROWSER_BUNDLE_ID__"
    if (count of windows) is 0 then
      return ""
    end if
    tell active tab of my __getFrontWindow()
      return execute javascript "__VERSION_QUESTION__"
    end tell
  end tell
  return ""
end getBrowserVersionString

on executeJavascriptInTab(js, nativeTab) --> String
  tell application id "__BROWSER_BUNDLE_ID__"
    tell nativeTab
      return execute javascript js
    end tell
  end tell
end executeJS
