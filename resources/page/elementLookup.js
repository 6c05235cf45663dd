// The selector step of a job: a text that names an element becomes that element, in whichever of these forms it has.
//
//     kqz12               a reference from an outline: the element that it was given to, as long as it is that
//     button "Sign in"    a role and a name, or a name alone, as outlines tell them and people see them
//     #login              a selector of CSS
//
// A text of the first two forms names one element or none: where it doesn't, the job fails and tells the nearest.

const formOfReference = new RegExp("^([a-z]{3})([1-9][0-9]*)$");
const formOfLabel = new RegExp('^(?:([a-z][a-z0-9]*) )?"((?:[^"\\\\]|\\\\.)*)"$');

// A job answers with the text form of what is thrown in it. This one's are the parts that an action makes its error of.
class ElementFailure {
  constructor(kind, asked, detail, candidates) {
    this.parts = ["element failure", kind, asked, detail, candidates.join(", ")];
  }
  toString() {
    return this.parts;
  }
}

// Everything on the page that has a role and a name, as an outline would tell it.
function allItems() {
  const items = [];
  const walk = new OutlineWalk({}, (item) => {
    if (item.element && !item.isNotSeen) {
      items.push(item);
    }
  });
  if (window.document.body) {
    walk.visit(window.document.body);
  }
  return items;
}

// The likeness of two names, from 0 to 1: their pairs of letters.
function likeness(left, right) {
  const pairs = (text) => new Set([...text.toLowerCase()].map((letter, place, all) => letter + (all[place + 1] ?? "")));
  const ours = pairs(left);
  const theirs = pairs(right);
  let common = 0;
  for (const pair of ours) {
    common += theirs.has(pair) ? 1 : 0;
  }
  return ours.size + theirs.size === 0 ? 0 : (2 * common) / (ours.size + theirs.size);
}

const tellItem = (item) => `${labelOf(item)} ${referenceTo(referenceRegistry(), item.element, labelOf(item))}`;

// Those that come nearest to a label, best first.
function nearestItems(items, role, name) {
  return items
    .filter((item) => item.name !== "")
    .map((item) => ({ item, rank: likeness(item.name, name) + (item.role === role ? 0.3 : 0) + (item.isActedOn ? 0.1 : 0) }))
    .filter(({ rank }) => rank > 0.45)
    .sort((left, right) => right.rank - left.rank)
    .slice(0, 5)
    .map(({ item }) => tellItem(item));
}

const roleInLabel = (item) => (item.role === "heading" ? `h${item.level}` : item.role);

// The one element of that role and name; a name alone is that of an element to act on. Exact ones come before those
// that differ in the case of letters. Null when there is none and the job `waits` for it.
function elementLabelled(asked, role, name, waits) {
  const items = allItems();
  const isOfRole = (item) => (role ? item.role === role || roleInLabel(item) === role : item.isActedOn);
  let found = items.filter((item) => isOfRole(item) && item.name === name);
  if (found.length === 0) {
    found = items.filter((item) => isOfRole(item) && item.name.toLowerCase() === name.toLowerCase());
  }
  if (found.length === 1) {
    return found[0].element;
  }
  if (found.length > 1) {
    throw new ElementFailure("ambiguous", asked, `${found.length}`, found.slice(0, 5).map(tellItem));
  }
  if (waits) {
    return null;
  }
  throw new ElementFailure("notFound", asked, "", nearestItems(items, role, name));
}

// The element that a reference was given to. It is refused when it has left the page, and when it has become something
// else: lists that are drawn anew use their elements for other entries.
function elementReferred(asked, letters, number, waits) {
  const registry = window.document[registryName];
  const known = registry && registry.letters === letters ? registry.known[number - 1] : undefined;
  if (!known) {
    if (waits) {
      return null;
    }
    throw new ElementFailure("unknown", asked, "", []);
  }
  const element = known.element.deref();
  const [, role = "", name = ""] = formOfLabel.exec(known.label) ?? [];
  if (!element || !element.isConnected || !element.ownerDocument.defaultView) {
    if (waits) {
      return null;
    }
    throw new ElementFailure("gone", asked, known.label, nearestItems(allItems(), role, name));
  }
  const isHeading = roleOf(element) === "heading";
  const item = { role: roleOf(element), element, name: nameOf(element, roleOf(element)),
    level: isHeading ? Number(element.getAttribute("aria-level") ?? element.tagName[1]) || 2 : undefined };
  if (labelOf(item) !== known.label) {
    throw new ElementFailure("changed", asked, known.label, [labelOf(item)]);
  }
  return element;
}

// The element that `asked` names, or null for a selector that matches nothing.
function namedElement(asked, waits = false) {
  const reference = formOfReference.exec(asked);
  if (reference) {
    return elementReferred(asked, reference[1], Number(reference[2]), waits);
  }
  const label = formOfLabel.exec(asked);
  if (label) {
    const name = label[2].replace(new RegExp("\\\\(.)", "g"), "$1");
    return elementLabelled(asked, label[1] ?? "", name, waits);
  }
  return window.document.querySelector(asked);
}

// The page's document as the library's functions see it: its selector step is ours. What is typed goes to the document
// that has the element, which may be that of a frame.
function documentOfNamedElements(waits) {
  let last = null;
  return {
    get readyState() {
      return window.document.readyState;
    },
    querySelector(selector) {
      last = namedElement(selector, waits);
      return last;
    },
    execCommand(...command) {
      return (last?.ownerDocument ?? window.document).execCommand(...command);
    },
  };
}
