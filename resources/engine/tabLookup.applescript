set tabID to "__TAB_ID__"
set nativeObjects to my findNativeTabAndWindowForTabID(tabID)
if nativeObjects is missing value or nativeObjects is null then
  return failure(__TAB_NOT_FOUND__)
end if

set __VARIABLES__ to nativeObjects
