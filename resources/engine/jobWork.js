async function() {
  try {
    __PAGE_LIBRARY__
    __JS__
  } catch (error) {
    return error.toString()
  }
}
