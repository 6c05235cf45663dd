on makeBrowserWindowData(nativeWindow) --> BrowserWindowData | null
  set browserWindowData to {activeTab:"", activeTabID:"", activeTabIndex:0, isPrivate:false, isVisible:false, tabsList:{}, windowID:"", windowIndex:0, windowTitle:""}
  tell application id "__BROWSER_BUNDLE_ID__"
    tell nativeWindow
      if current tab is missing value then
        return null
      end if
      set _isPrivate to my __isPrivateWindow(nativeWindow)
      set activeTab of browserWindowData to my makeBrowserTabData(current tab, nativeWindow, _isPrivate)
      set activeTabID of browserWindowData to browserWindowData's activeTab's tabID
      set activeTabIndex of browserWindowData to index of current tab
      set isPrivate of browserWindowData to _isPrivate
      set isVisible of browserWindowData to visible
      set tabsList of browserWindowData to {}
      set windowID of browserWindowData to id as text
      set windowIndex of browserWindowData to index
      set windowTitle of browserWindowData to name
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
      set isParentWindowPrivate to my __isPrivateWindow(nativeParentWindow)
    end if
    tell nativeTab
      set isLoading of browserTabData to false
      set isPrivate of browserTabData to isParentWindowPrivate
      set tabID of browserTabData to my __buildTabID(id of nativeParentWindow, index)
      set tabTitle of browserTabData to name
      if URL is missing value or URL is null then
        set tabURL of browserTabData to ""
      else
        set tabURL of browserTabData to URL
      end if
    end tell
  end tell
  return browserTabData
end makeBrowserTabData

on getFrontVars() --> {Window, text, Tab, text}
  tell application id "__BROWSER_BUNDLE_ID__"
    set FRONT_WINDOW to front window
    set FRONT_WINDOW_ID to id of FRONT_WINDOW
    set FRONT_TAB to current tab of FRONT_WINDOW
    set FRONT_TAB_ID to my __buildTabID(FRONT_WINDOW_ID, index of FRONT_TAB)
    return {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID}
  end tell
end getFrontVars

on getListOfWindows() --> [BrowserWindowData]
  set windowList to {}
  tell application id "__BROWSER_BUNDLE_ID__"
    repeat with nativeWindow in windows
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
      set isPrivateWindow to my __isPrivateWindow(nativeWindow)
      repeat with nativeTab in (every tab of nativeWindow)
        set end of tabsList to my makeBrowserTabData(nativeTab, nativeWindow, isPrivateWindow)
      end repeat
    end repeat
  end tell
  return tabsList
end getListOfTabs

on findNativeTabAndWindowForTabID(tabID) --> {Tab, Window} | null
  tell application id "__BROWSER_BUNDLE_ID__"
    set {windowID, tabIndex} to my __splitTabIdIntoWindowIdAndTabIndex(tabID)
    set nativeWindow to my findNativeWindowWithID(windowID)
    if nativeWindow is null then return null
    try
      set nativeTab to tab index tabIndex of nativeWindow
      return {nativeTab, nativeWindow}
    on error
      return null
    end try
  end tell
  return null
end findNativeTabAndWindowForTabID

on createTabInWindow(nativeWindow, newURL) --> Tab
  tell application id "__BROWSER_BUNDLE_ID__"
    set newTab to make tab in nativeWindow
    set current tab of nativeWindow to newTab
    if newURL is not missing value and newURL is not null then
      set URL of newTab to newURL
    end if
    return newTab
  end tell
end createTabInWindow

on focusTabAndWindow(nativeTab, nativeWindow) --> void
  tell application id "__BROWSER_BUNDLE_ID__"
    set current tab of nativeWindow to nativeTab
    set index of nativeWindow to 1
    activate
  end tell
end focusTabAndWindow

on getBrowserVersionString() --> String
  tell application id "__BROWSER_BUNDLE_ID__"
    if (count of windows) is 0 then
      return ""
    end if
    tell current tab of front window
      return do javascript "navigator.userAgent.match(/Version\\/([\\d+\\.]+)/)?.[1] || ''"
    end tell
  end tell
  return ""
end getBrowserVersionString

on executeJavascriptInTab(js, nativeTab) --> String
  tell application id "__BROWSER_BUNDLE_ID__"
    tell nativeTab
      return do javascript js
    end tell
  end tell
end executeJS

on __buildTabID(windowID, tabIndex)
  return (windowID as text) & ":" & tabIndex as text
end __buildTabID

on __splitTabIdIntoWindowIdAndTabIndex(tabID)
  return splitString(tabID, ":")
end __splitTabIdIntoWindowIdAndTabIndex

on __isPrivateWindow(nativeWindow) --> Bool
  tell application "System Events" to tell process "Safari"
    set processWindowNames to (name of windows) as list
  end tell
  set nativeWindowIdx to index of nativeWindow
  set nativeWindowName to name of nativeWindow
  set processWindowName to item nativeWindowIdx of processWindowNames
  return nativeWindowName is not processWindowName
end __isPrivateWindow

property __localizedFileMenuNames : {"Ablage", "Archief", "Archivo", "Arkisto", "Arkiv", "Arquivo", "Arxiu", "Datoteka", "Dosya", "Fail", "Fájl", "Ficheiro", "Fichier", "File", "Fișier", "Plik", "Soubor", "Súbor", "Tệp", "文件", "檔案", "파일", "ملف", "Файл", "קובץ", "ไฟล์", "ファイル", "फ़ाइल", "Αρχείο"}

property __localizedNewPrivateWindowNames : {"Cửa sổ riêng tư mới", "Fereastră privată nouă", "Jendela Pribadi Baru", "Neues privates Fenster", "New Private Window", "Nieuw privévenster", "Nouvelle fenêtre privée", "Nova Janela com Navegação Privada", "Nova finestra privada", "Nova janela privada", "Nové anonymné okno", "Nové anonymní okno", "Novi privatni prozor", "Nowe okno prywatne", "Nueva ventana privada", "Nuova finestra privata", "Nyt privat vindue", "Nytt privat fönster", "Nytt privat vindu", "Tetingkap Peribadi Baharu", "Új privát ablak", "Uusi yksityinen ikkuna", "Yeni Özel Pencere", "नई गोपनीय विंडो", "새로운 개인정보 보호 윈도우", "Νέο ιδιωτικό παράθυρο", "חלון פרטי חדש", "Нове приватне вікно", "نافذة خاصة جديدة", "Новое частное окно", "新增私人視窗", "新增私密視窗", "新建无痕浏览窗口", "新規プライベートウインドウ", "หน้าต่างส่วนตัวใหม่"}

on __getLocalizedMenu(mainMenuNames) --> System Events > menu
  tell application "System Events" to tell process "Safari"
    tell menu bar 1
      set menuNames to name of menu bar items
      repeat with menuName in menuNames
        if mainMenuNames contains menuName then
          return first menu of (first menu bar item whose name is menuName)
        end if
      end repeat
    end tell
  end tell
  return null
end __getLocalizedMenu

on __createPrivateWindow() --> Bool
  tell application "System Events" to tell process "Safari"
    set fileMenu to my __getLocalizedMenu(__localizedFileMenuNames)
    set menuItems to name of menu items of fileMenu
    set idx to 1
    repeat with menuItem in menuItems
      if __localizedNewPrivateWindowNames contains (menuItem as string) then
        click menu item idx of fileMenu
        return true
      end if
      set idx to idx + 1
    end repeat
  end tell
  return false
end __createPrivateWindow
