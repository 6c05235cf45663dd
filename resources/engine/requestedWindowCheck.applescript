-- Check for specific browser window
set nativeWindow to my findNativeWindowWithID("__WINDOW_ID__")
if nativeWindow is missing value or nativeWindow is null then
  return failure(__WINDOW_NOT_FOUND__)
end if

set REQUESTED_WINDOW to nativeWindow
