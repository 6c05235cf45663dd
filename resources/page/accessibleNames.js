// Roles, names and states of elements as assistive programs get them: by the rules of the Accessible Name and
// Description Computation 1.2 and the HTML Accessibility API Mappings. Everything is read, nothing is written: a page
// sees no difference. Joined into one line like pageLibrary.js, so regular expressions are made of texts.

const blanks = new RegExp("[\\u0000-\\u0020\\u007f-\\u00a0\\u1680\\u2000-\\u200a\\u2028\\u2029\\u202f\\u205f\\u3000]+", "g");
// Characters that show nothing, or turn the order of others: a name that holds them would be read as another.
const unseen = new RegExp("[\\u00ad\\u200b\\u200e\\u200f\\u202a-\\u202e\\u2060-\\u2069\\ufeff\\ufff9-\\ufffb]|\\udb40[\\udc00-\\udc7f]", "g");
const isPlain = new RegExp("^[!-~]+(?: [!-~]+)*$");

// A text as it is seen on one line, and at most `limit` characters of it. Its end says that there is more.
function plainText(text, limit = 200) {
  if (text.length <= limit && isPlain.test(text)) {
    return text;
  }
  let start = 0;
  while (start < text.length && text.charCodeAt(start) <= 32) {
    start += 1;
  }
  const enough = text.slice(start, start + 4 * limit);
  const plain = enough.replace(blanks, " ").replace(unseen, "").trim();
  const isCut = plain.length > limit || start + enough.length < text.length;
  const kept = isCut ? `${plain.slice(0, limit - 1)}…` : plain;
  return kept.toWellFormed ? kept.toWellFormed() : kept;
}

// The roles that a page may give an element by itself and that an outline tells apart.
const knownRoles = new Set(
  ("alert alertdialog application article banner blockquote button caption cell checkbox code columnheader combobox " +
    "complementary contentinfo definition dialog document feed figure form grid gridcell group heading image img link " +
    "list listbox listitem log main marquee math menu menubar menuitem menuitemcheckbox menuitemradio meter navigation " +
    "none note option paragraph presentation progressbar radio radiogroup region row rowgroup rowheader scrollbar search " +
    "searchbox separator slider spinbutton status switch tab table tablist tabpanel term textbox timer toolbar tooltip " +
    "tree treegrid treeitem").split(" "),
);

// Roles of elements that a user acts on. "clickable" and "summary" are no roles of ARIA: an element without a role that
// takes the focus or a click, and the line that opens a <details>.
const actedOn = new Set(
  ("button checkbox clickable color combobox date file link listbox menuitem menuitemcheckbox menuitemradio option radio " +
    "searchbox slider spinbutton summary switch tab textbox time treeitem").split(" "),
);

// Roles that take their name from what they contain.
const namedByContent = new Set(
  ("button cell checkbox clickable columnheader gridcell heading link menuitem menuitemcheckbox menuitemradio option " +
    "radio row rowheader summary switch tab tooltip treeitem").split(" "),
);

const rolesOfTags = {
  __proto__: null, ARTICLE: "article", ASIDE: "complementary", BLOCKQUOTE: "blockquote", BUTTON: "button",
  CAPTION: "caption", DETAILS: "group", DIALOG: "dialog", DL: "list", FIELDSET: "group", FIGURE: "figure", H1: "heading",
  H2: "heading", H3: "heading", H4: "heading", H5: "heading", H6: "heading", HR: "separator", LI: "listitem",
  MAIN: "main", MENU: "list", METER: "meter", NAV: "navigation", OL: "list", OPTGROUP: "group", OPTION: "option",
  OUTPUT: "status", PROGRESS: "progressbar", SEARCH: "search", TABLE: "table", TEXTAREA: "textbox", TR: "row",
  UL: "list", MATH: "math", IFRAME: "frame", FRAME: "frame", AUDIO: "audio", VIDEO: "video",
};

const rolesOfInputs = {
  __proto__: null, button: "button", checkbox: "checkbox", color: "color", date: "date", "datetime-local": "date",
  file: "file", hidden: "", image: "button", month: "date", number: "spinbutton", radio: "radio", range: "slider",
  reset: "button", search: "searchbox", submit: "button", time: "time", week: "date",
};

const sectioning = "article, aside, main, nav, section, [role=article], [role=complementary], [role=main], " +
  "[role=navigation], [role=region]";

const attribute = (element, name) => element.getAttribute(name) ?? "";
const hasName = (element) =>
  attribute(element, "aria-label").trim() !== "" || element.hasAttribute("aria-labelledby") || element.hasAttribute("title");
const takesFocus = (element) =>
  element.tabIndex >= 0 && (element.hasAttribute("tabindex") || element.isContentEditable) && !element.disabled;

// The role that a tag has by itself; empty for none that matters.
function roleOfTag(element) {
  switch (element.tagName) {
    case "A":
    case "AREA":
      return element.hasAttribute("href") ? "link" : "";
    case "INPUT":
      if (element.list && rolesOfInputs[element.type] === undefined) {
        return "combobox";
      }
      return rolesOfInputs[element.type] ?? "textbox";
    case "SELECT":
      return element.multiple || element.size > 1 ? "listbox" : "combobox";
    case "IMG":
      return element.getAttribute("alt") === "" && !hasName(element) ? "" : "image";
    case "svg":
      return hasName(element) || element.querySelector(":scope > title") ? "image" : "";
    case "HEADER":
      return element.parentElement?.closest(sectioning) ? "" : "banner";
    case "FOOTER":
      return element.parentElement?.closest(sectioning) ? "" : "contentinfo";
    case "FORM":
      return hasName(element) ? "form" : "";
    case "SECTION":
      return hasName(element) ? "region" : "";
    case "SUMMARY":
      return element.parentElement?.tagName === "DETAILS" && element.parentElement.querySelector(":scope > summary") === element
        ? "summary" : "";
    case "TD":
      return element.closest("[role=grid], [role=treegrid]") ? "gridcell" : "cell";
    case "TH":
      return element.scope === "row" || element.scope === "rowgroup" ? "rowheader" : "columnheader";
    default:
      return rolesOfTags[element.tagName] ?? "";
  }
}

// An element's role: the first that the page gives and that is known, else that of its tag. An element without one
// that takes the focus or a click is "clickable".
function roleOf(element) {
  const given = element.getAttribute("role");
  let role;
  if (given) {
    role = given.toLowerCase().split(" ").find((word) => knownRoles.has(word));
  }
  // A page can't take the role from what takes the focus.
  if (role === "none" || role === "presentation") {
    role = takesFocus(element) || actedOn.has(roleOfTag(element)) ? undefined : "";
  }
  role ??= roleOfTag(element);
  if (role === "img") {
    return "image";
  }
  if (role !== "") {
    return role;
  }
  if (element.isContentEditable && !element.parentElement?.isContentEditable) {
    return "textbox";
  }
  return (element.hasAttribute("tabindex") && element.tabIndex >= 0) || element.hasAttribute("onclick") ? "clickable" : "";
}

const regardingVisibility = { visibilityProperty: true };

// 2: shown. 1: not shown itself, though something in it may be. 0: nothing in it is shown.
function shownness(element) {
  if (element.checkVisibility(regardingVisibility)) {
    return 2;
  }
  if (element.checkVisibility()) {
    return 1;
  }
  // Without a box of its own, but with those of its children; and areas of a map have none at all.
  if (element.tagName === "AREA") {
    return 2;
  }
  const style = getComputedStyle(element);
  return style.display === "contents" ? (style.visibility === "visible" ? 2 : 1) : 0;
}

const isHiddenByAttribute = (element) => attribute(element, "aria-hidden") === "true" || element.inert === true;

// The children as they are shown: those of a shadow root, of a slot what was put there.
function shownChildren(element) {
  if (element.shadowRoot) {
    styledWithText = "*";
    return element.shadowRoot.childNodes;
  }
  if (element.tagName === "SLOT") {
    const assigned = element.assignedNodes();
    return assigned.length > 0 ? assigned : element.childNodes;
  }
  return element.childNodes;
}

// The elements around which styles of the page may put text, as a selector: asking the style of each element is what
// names would cost most. Empty for none, "*" where the styles can't be known: in sheets of other origins, which may do
// anything, in shadow roots and in frames.
let styledWithText = "*";
const pseudoAlone = new RegExp("(^|[\\s>+~,])::?(?:before|after)", "g");
const pseudoElement = new RegExp("::?(?:before|after)", "g");

function selectorsWithText(rules, selectors) {
  for (const rule of rules) {
    if (rule.selectorText?.includes("&")) {
      selectors.push("*");
    } else if (rule.style?.content && rule.selectorText) {
      selectors.push(rule.selectorText.replace(pseudoAlone, "$1*").replace(pseudoElement, ""));
    }
    if (rule.styleSheet || rule.cssRules?.length > 0) {
      selectorsWithText((rule.styleSheet ?? rule).cssRules, selectors);
    }
  }
  return selectors;
}

function lookForStyledText() {
  try {
    const page = window.document;
    const sheets = [...page.styleSheets, ...page.adoptedStyleSheets];
    styledWithText = sheets.flatMap((sheet) => selectorsWithText(sheet.cssRules, [])).join(",");
    if (styledWithText !== "") {
      page.documentElement.matches(styledWithText);
    }
  } catch {
    styledWithText = "*";
  }
}

// The text that a style puts before or behind an element's content: the quoted parts, or what stands for them behind a
// slash.
function styledText(element, place) {
  if (styledWithText === "" || (styledWithText !== "*" && !element.matches(styledWithText))) {
    return "";
  }
  const content = getComputedStyle(element, place).content;
  if (content === "none" || content === "normal" || content === "") {
    return "";
  }
  let text = "";
  let isQuoted = false;
  for (let index = 0; index < content.length; index += 1) {
    const character = content[index];
    if (character === '"') {
      isQuoted = !isQuoted;
    } else if (!isQuoted && character === "/") {
      text = "";
    } else if (isQuoted) {
      index += character === "\\" ? 1 : 0;
      text += content[index];
    }
  }
  const style = getComputedStyle(element, place);
  return style.display === "none" ? "" : style.display === "inline" ? text : ` ${text} `;
}

// A control that stands in another's label counts by its value.
function valueInName(element, role) {
  switch (role) {
    case "textbox":
    case "searchbox":
      return element.value ?? element.textContent;
    case "combobox":
    case "listbox":
      return element.selectedOptions ? [...element.selectedOptions].map((option) => option.text).join(" ") : element.value ?? "";
    case "slider":
    case "spinbutton":
      return element.getAttribute("aria-valuetext") ?? element.getAttribute("aria-valuenow") ?? element.value ?? "";
    default:
      return undefined;
  }
}

// The text of an element's role and content; `seen` are the elements that have had their turn. A name ends at its limit,
// so a megabyte of text costs no more than a line.
function textOfContent(element, seen, isHiddenToo) {
  const only = element.firstChild;
  let text = styledText(element, "::before");
  if (only && !only.nextSibling && only.nodeType === 3 && !element.shadowRoot) {
    text += only.data;
  } else {
    for (const child of shownChildren(element)) {
      if (text.length > 2000) {
        break;
      }
      if (child.nodeType === 3) {
        text += child.data;
      } else if (child.nodeType === 1 && !seen.has(child)) {
        if (child.tagName === "BR") {
          text += " ";
          continue;
        }
        const shown = isHiddenToo ? 2 : shownness(child);
        if (shown === 0 || (!isHiddenToo && attribute(child, "aria-hidden") === "true")) {
          continue;
        }
        const part = shown === 2 ? nameInside(child, seen, isHiddenToo) : textOfContent(child, seen, false);
        const display = getComputedStyle(child).display;
        text += display === "inline" || display === "contents" ? part : ` ${part} `;
      }
    }
  }
  return text + styledText(element, "::after");
}

// The part that an element has in the name of one around it.
function nameInside(element, seen, isHiddenToo) {
  seen.add(element);
  if (element.tagName === "SCRIPT" || element.tagName === "STYLE" || element.tagName === "NOSCRIPT") {
    return "";
  }
  const role = roleOf(element);
  const value = valueInName(element, role);
  if (value !== undefined) {
    return value;
  }
  const own = namedByAttributes(element, role, seen);
  return own !== "" ? own : textOfContent(element, seen, isHiddenToo) || attribute(element, "title");
}

// The name that labels or attributes of the element give.
function namedByAttributes(element, role, seen, isReferred = false) {
  const label = attribute(element, "aria-label").trim();
  if (label !== "") {
    return label;
  }
  switch (element.tagName) {
    case "IMG":
    case "AREA":
      return attribute(element, "alt");
    case "svg": {
      const title = element.querySelector(":scope > title");
      return title ? title.textContent : "";
    }
    case "INPUT":
      if (element.type === "image") {
        return attribute(element, "alt") || attribute(element, "title") || "Submit";
      }
      if (role === "button" && element.type !== "checkbox") {
        return element.value || { submit: "Submit", reset: "Reset" }[element.type] || attribute(element, "title");
      }
      break;
    case "FIELDSET":
    case "TABLE":
    case "FIGURE": {
      const child = { FIELDSET: "legend", TABLE: "caption", FIGURE: "figcaption" }[element.tagName];
      const caption = element.querySelector(`:scope > ${child}`);
      return caption ? textOfContent(caption, seen, false) : "";
    }
  }
  if (!isReferred && element.labels && element.labels.length > 0) {
    const texts = [];
    for (const labelElement of element.labels) {
      if (!seen.has(labelElement)) {
        seen.add(element);
        texts.push(nameInside(labelElement, seen, shownness(labelElement) !== 2));
      }
    }
    return texts.join(" ");
  }
  return "";
}

// An element's accessible name on one line.
function nameOf(element, role, limit = 200) {
  const labelledBy = element.getAttribute("aria-labelledby");
  if (labelledBy) {
    const root = element.getRootNode();
    const texts = [];
    for (const id of labelledBy.split(blanks)) {
      const other = id && root.getElementById?.(id);
      if (other) {
        const seen = new Set([other]);
        const otherRole = roleOf(other);
        texts.push(
          namedByAttributes(other, otherRole, seen) ||
            (other === element ? "" : valueInName(other, otherRole)) ||
            textOfContent(other, seen, shownness(other) !== 2) ||
            attribute(other, "title"),
        );
      }
    }
    const name = plainText(texts.join(" "), limit);
    if (name !== "") {
      return name;
    }
  }
  const seen = new Set([element]);
  let name = plainText(namedByAttributes(element, role, seen), limit);
  if (name === "" && namedByContent.has(role)) {
    name = plainText(textOfContent(element, seen, false), limit);
  }
  if (name === "") {
    name = plainText(attribute(element, "title"), limit);
  }
  return name !== "" ? name : plainText(attribute(element, "placeholder") || attribute(element, "aria-placeholder"), limit);
}

// The value that a user would see in a control; of a password nothing but that there is one.
function valueOf(element, role) {
  switch (role) {
    case "textbox":
    case "searchbox":
    case "spinbutton":
    case "combobox":
    case "listbox":
    case "color":
    case "date":
    case "time":
    case "file":
    case "slider":
    case "meter":
    case "progressbar":
      if (element.type === "password") {
        return element.value === "" ? "" : "•••";
      }
      if (element.type === "file") {
        return plainText([...element.files].map((file) => file.name).join(", "));
      }
      if (element.selectedOptions) {
        return plainText([...element.selectedOptions].map((option) => option.label).join(", "));
      }
      return plainText(
        typeof element.value === "string" || typeof element.value === "number"
          ? `${element.value}`
          : element.getAttribute("aria-valuetext") ?? element.getAttribute("aria-valuenow") ??
              (element.isContentEditable ? element.textContent : ""),
      );
    default:
      return "";
  }
}

// The states that differ from the usual ones of such an element.
function statesOf(element, role) {
  const states = [];
  const is = (name) => attribute(element, `aria-${name}`);
  const add = (state, holds) => {
    if (holds) {
      states.push(state);
    }
  };
  const isChecked = typeof element.checked === "boolean" && element.tagName === "INPUT" ? element.checked : is("checked") === "true";
  add("checked", isChecked && element.indeterminate !== true);
  add("mixed", element.indeterminate === true && element.type === "checkbox" || is("checked") === "mixed" || is("pressed") === "mixed");
  add("pressed", is("pressed") === "true");
  add("selected", is("selected") === "true" || (element.tagName === "OPTION" && element.selected));
  add("expanded", is("expanded") === "true" || (role === "summary" && element.parentElement.open));
  add("collapsed", is("expanded") === "false" || (role === "summary" && !element.parentElement.open));
  add("disabled", is("disabled") === "true" || (actedOn.has(role) && element.matches(":disabled")));
  add("required", is("required") === "true" || element.required === true);
  add("invalid", is("invalid") !== "" && is("invalid") !== "false");
  add("read-only", element.readOnly === true && (role === "textbox" || role === "searchbox") || is("readonly") === "true");
  add("current", is("current") !== "" && is("current") !== "false");
  add("busy", is("busy") === "true");
  add("focused", element.getRootNode().activeElement === element && element.tagName !== "BODY" && element.tagName !== "IFRAME");
  return states;
}
