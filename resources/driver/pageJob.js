// Runs a job of a generated program in a page and brings its result along when it comes at once. Pages may have changed
// what the language comes with, so everything is done by the language's own words; only for lists of other frames is
// there none.
(async (resultName, noValue, work) => {
  let outcome;
  let isLate = false;

  const isList = (value) => value.__proto__ === [].__proto__ || Array.isArray(value);

  const flatTexts = (value, texts) => {
    if (typeof value === "object" && value !== null && isList(value)) {
      for (let place = 0; place < value.length; place += 1) {
        if (place in value) flatTexts(value[place], texts);
      }
    } else {
      const hasText = typeof value === "string" || typeof value === "number" || typeof value === "boolean";
      texts[texts.length] = hasText ? `${value}` : "";
    }
    return texts;
  };

  // What a page puts on every object as `then` would be called with the job's list, as if that were a promise.
  if ({}.then !== undefined) Array.prototype.then = undefined;

  // An outcome without a prototype is taken for a promise by nobody.
  (async () => {
    try {
      const value = await work();
      outcome = { __proto__: null, texts: value === undefined || value === null ? [noValue] : flatTexts(value, []) };
    } catch (error) {
      let text = "";
      try {
        text = `${error}`;
      } catch {}
      outcome = { __proto__: null, failure: text };
    }
    if (isLate) window[resultName] = outcome;
  })();

  // First only turns of the microtask queue: nothing else comes between, least of all another page.
  for (let turn = 0; turn < 64 && outcome === undefined; turn += 1) await null;
  try {
    const end = performance.now() + 100;
    while (outcome === undefined && performance.now() < end) await new Promise((resolve) => setTimeout(resolve, 4));
  } catch {}
  isLate = true;
  return outcome === undefined ? null : outcome;
})
