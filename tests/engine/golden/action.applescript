-- Check for available browser windows
if (count of windows) is 0 then
  return failure(2)
end if
   -- note
set x to 1 -- note
set y to "__BROWSER_BUNDLE_ID__ __ARGKEYS__"
	set js to "
    --counter;

  return success(1)"  
if b is "" then return success()
return success(my getListOfTabs())