// References to elements, such as “kqz12”: three letters that stand for this document as it was loaded, and a number
// that an element keeps as long as it lives. They are kept behind a symbol on the document, weakly, so that nothing in
// the page's tree, its events or its enumerable properties changes, and end with the document.

const registryName = Symbol.for("element references");

// The letters tell documents apart that a tab has had within half an hour, by tenths of a second.
function lettersOfNow() {
  let number = Math.floor(Date.now() / 100) % 17576;
  let letters = "";
  for (let place = 0; place < 3; place += 1) {
    letters += String.fromCharCode(97 + (number % 26));
    number = Math.floor(number / 26);
  }
  return letters;
}

// The registry of the page's document, made with the first reference that is given.
function referenceRegistry() {
  const page = window.document;
  if (!page[registryName]) {
    const registry = { letters: lettersOfNow(), numbers: new WeakMap(), known: [], outlines: new Map() };
    Object.defineProperty(page, registryName, { value: registry });
  }
  return page[registryName];
}

// The reference of an element, which is known from now on by its role and name, too.
function referenceTo(registry, element, label) {
  let number = registry.numbers.get(element);
  if (number === undefined) {
    number = registry.known.push({ element: new WeakRef(element), label });
    registry.numbers.set(element, number);
  } else {
    registry.known[number - 1].label = label;
  }
  return registry.letters + number;
}
