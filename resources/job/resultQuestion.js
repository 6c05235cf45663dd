window.__RESULT__ || -1
