window.__CANARY__ = 'alive';
(__WORK__)()
  .then(res => {
    window.__RESULT__ = (res === undefined || res === null)
      ? ['__EMPTY_RESULT_MARKER__']
      : [res]
        .flat(Infinity)
        .map(elem => ['string', 'number', 'boolean'].includes(typeof elem) ? `${elem}` : '')
  });
