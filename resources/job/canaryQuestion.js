'' + window.__CANARY__
