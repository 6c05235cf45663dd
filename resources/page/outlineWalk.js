// The walk through a page: one item for each thing that an outline tells of, in reading order. It goes down the tree as
// it is shown, through open shadow roots, slots and frames of the same origin, and looks at each element once; names are
// made for those that become items. Text between them is gathered into lines.

// Containers that are items by themselves, with what they contain below them. Others of these are passed through.
const framing = new Set(
  ("alert alertdialog banner complementary contentinfo dialog form frame grid group log main menu menubar navigation " +
    "radiogroup region row search status table tablist tabpanel toolbar tooltip tree treegrid").split(" "),
);
const framingByName = new Set("article feed figure group list log radiogroup tabpanel toolbar".split(" "));
const simple = new Set("heading image meter progressbar separator math audio video timer marquee scrollbar".split(" "));
const withoutContent = new Set("AUDIO CANVAS DATALIST HEAD LINK META NOSCRIPT OBJECT SCRIPT STYLE TEMPLATE TITLE VIDEO".split(" "));
const flowing = new Set(
  ("A ABBR ACRONYM B BDI BDO BIG CITE CODE DATA DEL DFN EM FONT I INS KBD LABEL MARK NOBR Q S SAMP SLOT SMALL SPAN STRIKE " +
    "STRONG SUB SUP TIME TT U VAR WBR").split(" "),
);

const captions = new Set(["CAPTION", "FIGCAPTION", "LEGEND"]);

const limitOfText = 300;
const childNodesOf = Object.getOwnPropertyDescriptor(Node.prototype, "childNodes").get;

// An element's address as short as it can be told on this page.
function shortAddress(element) {
  const address = `${element.href?.baseVal ?? element.href ?? element.src ?? ""}`;
  const page = window.location;
  const own = page.href.split("#")[0];
  let text = address;
  if (address.startsWith(`${own}#`)) {
    text = address.slice(own.length);
  } else if (page.origin !== "null" && address.startsWith(`${page.origin}/`)) {
    text = address.slice(page.origin.length);
  } else if (page.protocol === "file:" && address.startsWith("file://")) {
    const folder = own.slice(0, own.lastIndexOf("/") + 1);
    text = address.startsWith(folder) ? address.slice(folder.length) || "./" : address.slice(7);
  } else if (address.startsWith("javascript:")) {
    return "";
  } else if (address.startsWith("data:")) {
    text = `${address.slice(0, 24)}…`;
  }
  return plainText(text, 160).replaceAll(" ", "%20");
}

// `options.isInteractiveOnly` leaves out all but elements to act on. `take(item)` is called for each item; when it
// answers false, the rest is counted only.
class OutlineWalk {
  constructor(options, take) {
    lookForStyledText();
    this.isInteractiveOnly = options.isInteractiveOnly === true;
    this.take = take;
    this.isCounting = false;
    this.counts = { items: 0, actedOn: 0, frames: 0, unread: 0 };
    this.text = "";
    this.isQuiet = 0;
    this.depth = 0;
  }

  emit(item) {
    this.flushText();
    if (this.isCounting) {
      this.counts.items += 1;
      this.counts.actedOn += item.isActedOn ? 1 : 0;
    } else {
      item.depth = this.depth;
      this.isCounting = this.take(item) === false;
    }
  }

  flushText() {
    const text = this.text;
    this.text = "";
    if (text === "" || this.isInteractiveOnly) {
      return;
    }
    if (this.isCounting) {
      this.counts.items += text.trim() === "" ? 0 : 1;
      return;
    }
    const name = plainText(text, limitOfText);
    if (name !== "") {
      this.isCounting = this.take({ role: "text", name, depth: this.depth, states: [] }) === false;
    }
  }

  addText(text) {
    if (this.isQuiet === 0 && !this.isInteractiveOnly) {
      this.text += this.text.length < 4000 ? text : "";
    }
  }

  children(element) {
    if (element.shadowRoot || element.tagName === "SLOT") {
      for (const child of shownChildren(element)) {
        this.child(child);
      }
    } else {
      for (let child = element.firstChild; child; child = child.nextSibling) {
        this.child(child);
      }
    }
  }

  child(node) {
    if (node.nodeType === 3) {
      this.addText(node.data);
    } else if (node.nodeType === 1) {
      this.visit(node);
    }
  }

  below(element) {
    this.depth += 1;
    this.children(element);
    this.flushText();
    this.depth -= 1;
  }

  // The things that an item whose name tells its content may hold beside that: elements to act on.
  quietly(element) {
    if (element.firstElementChild || element.shadowRoot) {
      this.isQuiet += 1;
      this.below(element);
      this.isQuiet -= 1;
    }
  }

  visit(element) {
    if (withoutContent.has(element.tagName) && element.tagName !== "AUDIO" && element.tagName !== "VIDEO") {
      return;
    }
    try {
      const shown = isHiddenByAttribute(element) ? 0 : shownness(element);
      if (shown === 1) {
        this.elementsIn(shownChildren(element));
      } else if (shown === 2) {
        this.shown(element);
      }
    } catch {
      // A form whose fields are named like the functions of every element hides these.
      this.counts.unread += 1;
      this.elementsIn(childNodesOf.call(element));
    }
  }

  elementsIn(nodes) {
    for (const child of nodes) {
      if (child.nodeType === 1) {
        this.visit(child);
      }
    }
  }

  shown(element) {
    const role = roleOf(element);
    const isFlowing = flowing.has(element.tagName);
    if (!isFlowing) {
      this.flushText();
    }
    if (role === "frame") {
      this.frame(element);
    } else if (role !== "" && actedOn.has(role)) {
      this.control(element, role);
    } else if (role === "heading") {
      this.heading(element);
    } else if (simple.has(role)) {
      this.thing(element, role);
    } else if (role === "row") {
      this.row(element);
    } else if (framing.has(role) || framingByName.has(role)) {
      this.container(element, role);
    } else if (element.tagName === "BR" || element.tagName === "WBR") {
      this.addText(" ");
    } else if (element.control || captions.has(element.tagName)) {
      // The element that it labels has it for a name.
      this.isQuiet += 1;
      this.children(element);
      this.isQuiet -= 1;
    } else {
      const isItemInItem = role === "list" && element.parentElement?.closest("li, [role=listitem]");
      this.depth += isItemInItem ? 1 : 0;
      this.children(element);
      if (element.tagName.includes("-") && !element.shadowRoot && !element.firstChild && element.offsetHeight > 0) {
        this.emit({ role: "closed", name: element.tagName.toLowerCase(), states: [], isNotSeen: true });
      }
      if (!isFlowing) {
        this.flushText();
      }
      this.depth -= isItemInItem ? 1 : 0;
    }
  }

  control(element, role) {
    if (this.isCounting) {
      this.emit({ isActedOn: true });
      this.quietly(element);
      return;
    }
    const name = nameOf(element, role);
    const value = valueOf(element, role);
    const item = { role, name, value: value === name ? "" : value, states: statesOf(element, role), isActedOn: true, element };
    if (role === "link") {
      item.url = shortAddress(element);
    }
    if (element.tagName === "SELECT") {
      item.options = [...element.options].slice(0, 12).map((option) => plainText(option.label, 60));
      item.more = Math.max(0, element.options.length - 12);
    }
    this.emit(item);
    if (element.tagName !== "SELECT") {
      if (namedByContent.has(role) || role === "textbox" || role === "searchbox") {
        this.quietly(element);
      } else {
        this.below(element);
      }
    }
  }

  heading(element) {
    if (this.isInteractiveOnly || this.isCounting) {
      this.emitUnlessOnly({});
      this.quietly(element);
      return;
    }
    const level = Number(element.getAttribute("aria-level") ?? element.tagName[1]) || 2;
    this.emit({ role: "heading", name: nameOf(element, "heading"), level, states: [], element });
    this.quietly(element);
  }

  thing(element, role) {
    const name = this.isInteractiveOnly || this.isQuiet > 0 || this.isCounting ? "" : nameOf(element, role);
    if (role === "separator" || (role === "image" && name === "")) {
      this.quietly(element);
      return;
    }
    this.emitUnlessOnly({ role, name, value: valueOf(element, role), states: [], element });
  }

  emitUnlessOnly(item) {
    if (!this.isInteractiveOnly && this.isQuiet === 0) {
      this.emit(item);
    }
  }

  // A row of nothing but texts is one line.
  row(element) {
    if (this.isInteractiveOnly || element.querySelector("a, button, input, select, textarea, table, [role], [tabindex], iframe")) {
      this.children(element);
      this.flushText();
      return;
    }
    if (this.isCounting) {
      this.emitUnlessOnly({});
      return;
    }
    const cells = [];
    for (const cell of element.children) {
      if (shownness(cell) === 2) {
        cells.push(plainText(textOfContent(cell, new Set([cell]), false), limitOfText));
      }
    }
    if (cells.some((cell) => cell !== "")) {
      this.emitUnlessOnly({ role: "row", name: "", cells, states: [] });
    }
  }

  container(element, role) {
    if (this.isInteractiveOnly || this.isQuiet > 0) {
      this.children(element);
      return;
    }
    const name = this.isCounting ? "" : nameOf(element, role);
    if (name === "" && framingByName.has(role)) {
      this.children(element);
      this.flushText();
      return;
    }
    this.emit({ role, name, states: this.isCounting ? [] : statesOf(element, role), element });
    this.below(element);
  }

  // A frame of another origin is a closed door to the page; what is behind it isn't told, but that it is there.
  frame(element) {
    let inner = null;
    try {
      inner = element.contentDocument;
    } catch {}
    this.counts.frames += inner ? 0 : 1;
    this.emit({ role: "frame", name: nameOf(element, "frame"), url: shortAddress(element), states: [], element,
      isNotSeen: !inner, notSeen: "another origin" });
    if (inner && inner.body) {
      styledWithText = "*";
      this.below(inner.body);
    }
  }
}
