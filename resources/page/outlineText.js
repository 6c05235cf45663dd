// The text of an outline, made to be short and to be told apart from what pages write: a line for each item, its depth
// by indentation, everything that comes from the page in quotes, inside of which quotes and backslashes are escaped.
//
//     page "Shop" https://shop.example/cart
//     navigation
//      link "Home" / kqz1
//     h1 "Your cart"
//     "2 items"
//     textbox "Coupon" ="SUMMER" required kqz2
//     button "Pay" disabled kqz3

const quoted = (text) => `"${text.replaceAll("\\", "\\\\").replaceAll('"', '\\"')}"`;

// The words by which an element can be named anew, as they stand in its line.
function labelOf(item) {
  const role = item.role === "heading" ? `h${item.level}` : item.role;
  return item.name === "" ? role : `${role} ${quoted(item.name)}`;
}

// In brief a link's target is left out: it is what lists of links are mostly made of.
function lineOf(item, isBrief) {
  if (item.role === "text") {
    return quoted(item.name);
  }
  if (item.cells) {
    return `row ${item.cells.map(quoted).join(" ")}`;
  }
  let line = item.isNamedAbove ? item.role : labelOf(item);
  if (item.value) {
    line += ` =${quoted(item.value)}`;
  }
  if (item.options && item.options.length > 0) {
    line += ` of ${item.options.map(quoted).join(" ")}`;
    line += item.more > 0 ? ` and ${item.more} more` : "";
  }
  if (item.url && !isBrief) {
    line += ` ${item.url}`;
  }
  if (item.states.length > 0) {
    line += ` ${item.states.join(" ")}`;
  }
  if (item.isNotSeen) {
    line += item.notSeen ? ` (not seen: ${item.notSeen})` : " (not seen)";
  }
  return item.reference ? `${line} ${item.reference}` : line;
}

// The lines that are new and those that are gone, by how often each stands in either outline.
function changedLines(before, lines) {
  const left = new Map();
  for (const line of before) {
    left.set(line, (left.get(line) ?? 0) + 1);
  }
  const added = [];
  for (const [place, line] of lines.entries()) {
    const text = line.trimStart();
    const count = left.get(text) ?? 0;
    if (count > 0) {
      left.set(text, count - 1);
    } else {
      added.push(place);
    }
  }
  const removed = [];
  for (const [line, count] of left) {
    for (let time = 0; time < count; time += 1) {
      removed.push(line);
    }
  }
  return { added, removed };
}

// The outline of the page, or of what is below the element that `options.below` names: JSON with the text and the elements.
function pageOutline(options) {
  const registry = referenceRegistry();
  const root = options.below === "" ? null : namedElement(options.below);
  if (options.below !== "" && !root) {
    throw new ElementFailure("notFound", options.below, "", []);
  }
  // Text behind this many characters is counted, not told.
  const limit = Math.max(options.length, options.isChangesOnly ? 200000 : 0);
  const items = [];
  const lines = [];
  let length = 0;
  const walk = new OutlineWalk(options, (item) => {
    if (item.isActedOn) {
      item.reference = referenceTo(registry, item.element, labelOf(item));
    }
    // The link that a heading is needs no name of its own.
    const above = items.at(-1);
    item.isNamedAbove = above?.role === "heading" && above.depth === item.depth - 1 && above.name === item.name;
    const line = (options.isInteractiveOnly ? "" : " ".repeat(Math.min(item.depth, 20))) + lineOf(item, options.isInteractiveOnly);
    if (length + line.length > limit && lines.length > 0) {
      walk.counts.items += 1;
      walk.counts.actedOn += item.isActedOn ? 1 : 0;
      return false;
    }
    length += line.length + 1;
    items.push(item);
    lines.push(line);
    return true;
  });
  if (root) {
    walk.visit(root);
  } else if (window.document.body) {
    walk.visit(window.document.body);
  }
  walk.flushText();

  const head = `page ${quoted(plainText(window.document.title))} ${plainText(window.location.href, 300)}`;
  const key = `${options.isInteractiveOnly} ${options.below}`;
  const before = registry.outlines.get(key);
  registry.outlines.set(key, lines.map((line) => line.trimStart()));
  const told = [head];
  let shown = items;
  if (options.isChangesOnly && before) {
    const { added, removed } = changedLines(before, lines);
    told.push(...removed.map((line) => `- ${line}`), ...added.map((place) => `+ ${lines[place].trimStart()}`));
    told.push(added.length + removed.length === 0 ? "(nothing has changed)" : `(${added.length} new, ${removed.length} gone)`);
    shown = added.map((place) => items[place]);
  } else {
    told.push(...lines);
  }
  const { counts } = walk;
  if (counts.items > 0) {
    told.push(`(left out: ${counts.items} lines more, ${counts.actedOn} of them to act on)`);
  }
  if (counts.unread > 0) {
    told.push(`(not read: ${counts.unread} elements that the page has changed)`);
  }
  const elements = shown.filter((item) => item.role !== "text" && item.role !== "row").map((item) => ({
    ...(item.reference && { reference: item.reference }), role: item.role, ...(item.name && { name: item.name }),
    ...(item.value && { value: item.value }), ...(item.states.length > 0 && { states: item.states }),
    ...(item.url && { url: `${item.element.href?.baseVal ?? item.element.href ?? item.element.src ?? ""}`.slice(0, 2000) }),
    ...(item.level && { level: item.level }), depth: item.depth,
  }));
  return JSON.stringify({
    title: plainText(window.document.title), url: `${window.location.href}`, text: told.join("\n"), elements,
    leftOut: counts.items,
  });
}
