delete window.__RESULT__
