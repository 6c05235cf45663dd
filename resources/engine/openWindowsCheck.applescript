-- Check for available browser windows
if (count of windows) is 0 then
  return failure(__NO_OPEN_WINDOWS__)
end if
