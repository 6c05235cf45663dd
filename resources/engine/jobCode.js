window.__CANARY__ = 'alive';
(async function() {
  try {
    __PAGE_LIBRARY__
    __JS__
  } catch (error) {
    return error.toString()
  }
})()
  .then(res => {
    window.__RESULT__ = (res === undefined || res === null)
      ? ['__EMPTY_RESULT_MARKER__']
      : [res]
        .flat(Infinity)
        .map(elem => ['string', 'number', 'boolean'].includes(typeof elem) ? `${elem}` : '')
  });
