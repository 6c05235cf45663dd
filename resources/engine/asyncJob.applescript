-- Run the async code
set jsJobCode to "__JOB_CODE__"
my executeJavascriptInTab(jsJobCode, nativeTab)

-- Periodically check for the result
repeat __POLL_COUNT__ times
  -- Check for the canary
  set canary to my executeJavascriptInTab("__CANARY_QUESTION__", nativeTab)
  if canary is not "alive" then
    return failure(__PAGE_LOAD_DURING_EXECUTION__)
  end if

  -- Check for the result
  set res to my executeJavascriptInTab("__RESULT_QUESTION__", nativeTab)
  if res is not -1 then
    my executeJavascriptInTab("__RESULT_REMOVAL__", nativeTab)
    return success(res)
  end if
  delay __INTERVAL__
end repeat
