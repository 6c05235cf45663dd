-- Run the async code
set jsJobCode to "window.__CANARY = 'alive';
(async function() {
  try {
    @PAGE_LIBRARY@
    return clickPageElement(\"a[title=\\\"x\\\\y\\\"]\")
return [1]
  } catch (error) {
    return error.toString()
  }
})()
  .then(res => {
    window.__RESULT = (res === undefined || res === null)
      ? ['@MARKER@']
      : [res]
        .flat(Infinity)
        .map(elem => ['string', 'number', 'boolean'].includes(typeof elem) ? `${elem}` : '')
  });"
my executeJavascriptInTab(jsJobCode, nativeTab)

-- Periodically check for the result
repeat 6 times
  -- Check for the canary
  set canary to my executeJavascriptInTab("'' + window.__CANARY", nativeTab)
  if canary is not "alive" then
    return failure(4)
  end if

  -- Check for the result
  set res to my executeJavascriptInTab("window.__RESULT || -1", nativeTab)
  if res is not -1 then
    my executeJavascriptInTab("delete window.__RESULT", nativeTab)
    return success(res)
  end if
  delay 0.2
end repeat