// The helpers that every page job carries. They are joined into one line when the program is built, so every statement
// ends in a semicolon and no text literal goes over a line's end.
"use strict";

// All links of the page, in document order.
function getAllLinks() {
  return [...document.querySelectorAll("a[href]")].map((link) => ({
    text: (link.innerText ?? "").trim(),
    url: link.href,
  }));
}

// All images of the page, in document order, with the size they are shown in.
function getAllImages() {
  return [...document.querySelectorAll("img")].map((image) => ({
    src: image.src,
    alt: image.alt,
    width: image.clientWidth || image.width || parseFloat(window.getComputedStyle(image).width),
    height: image.clientHeight || image.height || parseFloat(window.getComputedStyle(image).height),
  }));
}

// The selector of a target that is given by a name, an id or a selector.
function cssSelectorFor(value, strategy) {
  const quoted = (text) => text.replaceAll('"', '\\"');
  switch (strategy) {
    case "elementNameAttribute":
      return `[name="${quoted(value)}"]`;
    case "elementIDAttribute":
      return `[id="${quoted(value)}"]`;
    case "cssSelector":
      return value;
    default:
      throw Error("Invalid target strategy");
  }
}

// The value of a form field as a text; of a radio button, that of the one checked in its group.
function getFormFieldValue(value, strategy) {
  const field = document.querySelector(cssSelectorFor(value, strategy));
  if (!field) {
    return "";
  }
  switch (field.type) {
    case "checkbox":
      return field.checked ? "checked" : "unchecked";
    case "radio": {
      const group = cssSelectorFor(field.name, "elementNameAttribute");
      return field.closest("form, html")?.querySelector(`${group}:checked`)?.value || "";
    }
    default:
      return `${field.value}`;
  }
}

// Sets one form field, by typing where a user would type. True when the field was set.
function setFormFieldValue(value, strategy, newValue, fireChange = false, submit = false) {
  const field = document.querySelector(cssSelectorFor(value, strategy));
  if (!field) {
    return false;
  }
  if (typeof newValue === "object" && !Array.isArray(newValue)) {
    newValue = JSON.stringify(newValue);
  }
  const text = `${newValue}`;
  const type = () => {
    field.focus();
    document.execCommand("selectAll");
    document.execCommand("insertText", false, text);
  };
  const finish = () => {
    if (fireChange) {
      field.dispatchEvent(new Event("change"));
    }
    if (submit) {
      field.closest("form")?.submit();
    }
  };
  switch (field.tagName) {
    case "INPUT": {
      let isSet = true;
      switch (field.type) {
        case "email":
        case "number":
        case "password":
        case "search":
        case "tel":
        case "text":
        case "url":
          type();
          break;
        case "checkbox":
          field.checked = ["1", "checked", "enabled", "on", "true", "yes"].includes(text.toLowerCase());
          break;
        case "radio": {
          const group = cssSelectorFor(field.name, "elementNameAttribute");
          const choices = field.closest("form, body")?.querySelectorAll(group) ?? [];
          const choice = [...choices].find((button) => button.value === text);
          isSet = choice !== undefined;
          if (isSet) {
            choice.checked = true;
          }
          break;
        }
        case "file":
          isSet = false;
          break;
        default:
          field.value = text;
      }
      if (isSet) {
        finish();
      }
      return isSet;
    }
    case "SELECT": {
      const values = [newValue].flat(Infinity);
      for (const option of field.querySelectorAll("option")) {
        let isWanted = false;
        for (let place = 0; place < values.length; place += 1) {
          isWanted ||= `${values[place]}` === option.value;
        }
        option.selected = isWanted;
      }
      finish();
      return true;
    }
    case "TEXTAREA":
      type();
      finish();
      return true;
    default:
      field.value = text;
      finish();
      return true;
  }
}

// Sets every field of the map, whatever became of the one before, and submits with the last. True when all were set.
function setFormFields(map, strategy, fireChange = false, submit = false) {
  const fields = Object.keys(map);
  let areAllSet = true;
  for (let place = 0; place < fields.length; place += 1) {
    const isLast = place === fields.length - 1;
    areAllSet = setFormFieldValue(fields[place], strategy, map[fields[place]], fireChange, submit && isLast) && areAllSet;
  }
  return areAllSet;
}

// Sends a click to the first link whose text is the label, or holds it.
function clickLinkLabelled(label, exact = false) {
  const wanted = label.trim();
  const link = [...document.querySelectorAll("a[href]")].find((candidate) => {
    const text = candidate.innerText ?? "";
    return exact ? text.trim() === wanted : text.includes(wanted);
  });
  if (!link) {
    return false;
  }
  link.dispatchEvent(new PointerEvent("click"));
  return true;
}

function clickPageElement(selector) {
  const element = document.querySelector(selector);
  if (!element) {
    return false;
  }
  element.click();
  return true;
}

function scrollToPageElement(selector) {
  const element = document.querySelector(selector);
  if (!element) {
    return false;
  }
  element.scrollIntoView({ behavior: "instant", block: "center" });
  return true;
}

// True as soon as the page has the element and shows it; false when the time is over.
async function waitForPageElement(selector, seconds = 10) {
  const limit = seconds * 1000;
  const start = Date.now();
  const isLimitPassed = () => Date.now() - start > limit;
  const wait = () => new Promise((resolve) => setTimeout(resolve, 250));
  while (document.readyState !== "interactive" && document.readyState !== "complete") {
    if (isLimitPassed()) {
      return false;
    }
    await wait();
  }
  for (;;) {
    const element = document.querySelector(selector);
    if (element instanceof HTMLElement && element.hidden === false) {
      return true;
    }
    if (isLimitPassed()) {
      return false;
    }
    await wait();
  }
}

// The HTML of what the page shows, or the first element that a selector matches, and the address that its links start from.
// Null when nothing matches.
function getShownHTML(selector) {
  const root = selector ? document.querySelector(selector) : document.documentElement;
  if (!root) {
    return null;
  }
  const copy = root.cloneNode(true);
  const removeHidden = (element, twin) => {
    // From the end, so that the places of both trees stay the same.
    for (let place = element.children.length - 1; place >= 0; place -= 1) {
      const child = element.children[place];
      if (child.localName === "svg" || window.getComputedStyle(child).display === "none") {
        twin.children[place].remove();
      } else {
        removeHidden(child, twin.children[place]);
      }
    }
  };
  removeHidden(root, copy);
  return [copy.outerHTML, document.baseURI];
}

// The selected part of the page as HTML, with addresses that hold outside of it.
function getSelectionAsHTML() {
  const selection = window.getSelection();
  if (!selection || selection.rangeCount === 0) {
    return "";
  }
  const container = document.createElement("div");
  for (let index = 0; index < selection.rangeCount; index++) {
    container.appendChild(selection.getRangeAt(index).cloneContents());
  }
  container.querySelectorAll('a[href^="/"]').forEach((link) => {
    link.href = new URL(link.href || "", window.location.href).href;
  });
  container.querySelectorAll('img[src^="/"]').forEach((image) => {
    image.src = new URL(image.src || "", window.location.href).href;
  });
  return container.innerHTML;
}
