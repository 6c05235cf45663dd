// The helper inside the browser. It tells the order of windows and tabs, which no protocol outside does, and carries out
// commands on them. Whoever calls it, by whatever road, calls `tabwright.perform(name, parameters)`; the functions below
// know nothing of their callers.
//
// Answers are {value} or {fault, detail}; `perform` never throws. Faults: "noSuchTab", "noSuchWindow", "refused".
//
// Changes: the counter in each snapshot grows with every change that the browser reports, and `changed` tells listeners.
// A caller that has evaluated code here may leave a function named `tabwrightChanged` in the global object (a binding of
// the debugging protocol does); it is called with the counter as text. A snapshot is as of one moment between its
// request and its answer, so a caller may hold it until the next report only if none came while it was under way. A caller
// that has one may ask for what is new since: that costs a busy browser with a thousand tabs next to nothing.
"use strict";

// Only the manifest of the connected helper allows this; the other's callers come by the debugging protocol.
if (chrome.runtime.connectNative) importScripts("relay.js");

const unsetWindow = chrome.windows.WINDOW_ID_NONE;
const windowTypes = ["normal", "popup", "panel", "app", "devtools"];

// Kept over restarts of this worker, which the browser stops when it is idle, but not over restarts of the browser:
// window ids mean nothing in the next one.
const kept = {
  order: [], // window ids, front first
  names: {}, // window id -> the name that a script gave it
  focusedAt: 0, // when a window of this browser last got the focus, in milliseconds since 1970
};
let changes = 0;
// Counts mean nothing to the next run of this worker.
const instance = crypto.randomUUID();
// The count at the last change that was more than a tab's own title, address or progress, or a tab that was made or
// shown; the tabs that these have happened to since then, each with the count of its last change; and the count of each
// tab's making.
let reshaped = 0;
const touched = new Map();
const made = new Map();
// Of more tabs the whole snapshot is the cheaper answer.
const mostTouched = 20;
// A page may ask the user whether to leave it, who may take any time to answer.
const patienceWithClosings = 2000;

// ---------------------------------------------------------------------------------------------------- remembering

const isReady = restore();

async function restore() {
  const { order, names, focusedAt } = await chrome.storage.session.get(Object.keys(kept));
  if (names) kept.names = names;
  if (focusedAt) kept.focusedAt = Math.max(kept.focusedAt, focusedAt);
  if (order) {
    // Windows that were focused while the session store was read are in front already.
    kept.order = kept.order.concat(order.filter((id) => !kept.order.includes(id)));
    return;
  }
  // The first start: the window focused last in front, the others by when their active tab was last shown.
  const windows = await chrome.windows.getAll({ populate: true });
  const lastShown = (window) => window.tabs?.find((tab) => tab.active)?.lastAccessed ?? 0;
  windows.sort((left, right) => lastShown(right) - lastShown(left));
  if (windows.length > 0) kept.focusedAt = Math.max(kept.focusedAt, lastShown(windows[0]));
  const last = await chrome.windows.getLastFocused().catch(() => undefined);
  const seed = windows.map((window) => window.id);
  kept.order = kept.order.concat(seed.filter((id) => !kept.order.includes(id)));
  if (last && kept.order.includes(last.id)) toFront(last.id);
}

function remember() {
  return chrome.storage.session.set(kept);
}

function toFront(id) {
  if (kept.order[0] === id) return;
  kept.order = [id, ...kept.order.filter((other) => other !== id)];
}

function tookFocus(id) {
  toFront(id);
  kept.focusedAt = Date.now();
}

function report() {
  globalThis.tabwrightChanged?.(String(changes));
}

function changed() {
  changes += 1;
  reshaped = changes;
  touched.clear();
  made.clear();
  report();
}

function touch(id) {
  changes += 1;
  touched.set(id, changes);
  report();
}

const ownProperties = new Set(["status", "title", "url", "favIconUrl", "audible", "mutedInfo", "autoDiscardable"]);

function tabChanged(id, change) {
  if (Object.keys(change).every((property) => ownProperties.has(property))) touch(id);
  else changed();
}

// --------------------------------------------------------------------------------------------- listening to changes
// All listeners are added while the script first runs: the browser starts the worker for an event only then. Without the
// list of types, windows of developer tools would come and go unreported.

chrome.windows.onFocusChanged.addListener(async (id) => {
  if (id === unsetWindow) return;
  tookFocus(id);
  changed();
  await isReady;
  await remember();
}, { windowTypes });

chrome.windows.onCreated.addListener(async (window) => {
  if (window.focused) tookFocus(window.id);
  else if (!kept.order.includes(window.id)) kept.order.splice(1, 0, window.id);
  changed();
  await isReady;
  await remember();
}, { windowTypes });

chrome.windows.onRemoved.addListener(async (id) => {
  changed();
  await isReady;
  kept.order = kept.order.filter((other) => other !== id);
  delete kept.names[id];
  await remember();
}, { windowTypes });

for (const event of [
  chrome.windows.onBoundsChanged,
  chrome.tabs.onAttached,
  chrome.tabs.onDetached,
  chrome.tabs.onMoved,
  chrome.tabs.onRemoved,
  chrome.tabs.onReplaced,
]) {
  event.addListener(changed);
}
chrome.tabs.onUpdated.addListener(tabChanged);
chrome.tabs.onActivated.addListener(({ tabId }) => touch(tabId));
chrome.tabs.onCreated.addListener((tab) => {
  touch(tab.id);
  made.set(tab.id, changes);
});

// ------------------------------------------------------------------------------------------------------- the snapshot

function describeTab(tab) {
  return {
    id: tab.id,
    title: tab.title ?? "",
    url: tab.pendingUrl || tab.url || "",
    active: tab.active,
    loading: tab.status === "loading",
    arriving: Boolean(tab.pendingUrl),
    // It still shows the empty document that every tab begins with.
    opening: Boolean(tab.pendingUrl) && (!tab.url || tab.url === "about:blank"),
  };
}

// All windows front to back, with their tabs in strip order, and the protocol's target of each tab; or, where the caller
// has a snapshot and no more than some tabs have changed or were made since, only these and those it names.
async function snapshot({ since } = {}) {
  await isReady;
  const news = since ? await newsSince(since).catch(() => undefined) : undefined;
  return news ?? wholeSnapshot();
}

async function newsSince({ instance: known, changes: count, tabs: named }) {
  if (known !== instance || count < reshaped) return undefined;
  // What the browser has reported before it answers this has arrived by then.
  const last = await chrome.windows.getLastFocused({ windowTypes });
  const asOf = changes;
  const ids = [...new Set([...named, ...[...touched].filter(([, at]) => at > count).map(([id]) => id)])];
  if (ids.length > mostTouched || (last.focused && last.id !== kept.order[0])) return undefined;
  const isNew = (id) => made.get(id) > count;
  const [targets, ...tabs] = await Promise.all([
    ids.some(isNew) ? targetsOfTabs() : undefined,
    ...ids.map((id) => chrome.tabs.get(id)),
  ]);
  // Places in the strip count only among tabs that are all told of.
  if (count < reshaped || [...made.values()].some((at) => at > asOf)) return undefined;
  return {
    instance,
    changes: asOf,
    focusedAt: last.focused ? Date.now() : kept.focusedAt,
    tabs: tabs.map((tab) => ({
      ...describeTab(tab),
      window: tab.windowId,
      index: tab.index,
      ...(isNew(tab.id) && { target: targets.get(tab.id) ?? "" }),
    })),
  };
}

// The protocol's target of each tab; none where the protocol isn't the caller's road.
async function targetsOfTabs() {
  if (!chrome.debugger) return new Map();
  const pages = (await chrome.debugger.getTargets()).filter(({ tabId, type }) => tabId !== undefined && type === "page");
  return new Map(pages.map(({ tabId, id }) => [tabId, id]));
}

async function wholeSnapshot() {
  const asOf = changes;
  const [windows, targets] = await Promise.all([
    chrome.windows.getAll({ populate: true, windowTypes }),
    targetsOfTabs(),
  ]);
  orderWindows(windows);
  return {
    helper: chrome.runtime.getManifest().version,
    instance,
    changes: asOf,
    // A browser in which the user is now cannot have been left before.
    focusedAt: windows.some((window) => window.focused) ? Date.now() : kept.focusedAt,
    windows: windows.map((window) => ({
      id: window.id,
      type: window.type,
      name: kept.names[window.id] ?? "",
      incognito: window.incognito,
      state: window.state,
      bounds: [window.left, window.top, window.width, window.height],
      // A developer tools window shows a page of the browser's own, which is not a tab to anybody.
      tabs: (window.type === "devtools" ? [] : window.tabs ?? []).map((tab) => ({
        ...describeTab(tab),
        target: targets.get(tab.id) ?? "",
      })),
      title: window.type === "devtools" ? window.tabs?.[0]?.title ?? "" : "",
    })),
  };
}

// Sorts by the order of focus. Where exactly one window says that it has the focus, it is in front whatever events may
// have been missed; without a desktop every window says so.
function orderWindows(windows) {
  const focused = windows.filter((window) => window.focused);
  if (focused.length === 1) toFront(focused[0].id);
  for (const window of windows) {
    if (!kept.order.includes(window.id)) kept.order.push(window.id);
  }
  const places = new Map(kept.order.map((id, place) => [id, place]));
  windows.sort((left, right) => places.get(left.id) - places.get(right.id));
}

// ------------------------------------------------------------------------------------------------------- the commands

// An address that is not absolute would be taken as a path within this extension.
function requireAddress(url) {
  if (!URL.canParse(url)) throw new Error(`“${url}” is not an address`);
  return url;
}

// Puts a window in front in our order, once it has the focus. The desktop takes a moment for that, during which another
// window still says that it is focused; where the desktop refuses, we do not wait for ever.
async function settleInFront(id) {
  for (let attempt = 0; attempt < 25; attempt += 1) {
    if ((await chrome.windows.get(id, { windowTypes })).focused) break;
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
  await isReady;
  tookFocus(id);
  changed();
  await remember();
}

async function bringToFront(id) {
  const window = await chrome.windows.get(id, { windowTypes });
  const change = { focused: true };
  if (window.state === "minimized") change.state = "normal";
  await chrome.windows.update(id, change);
  await settleInFront(id);
}

const commands = {
  __proto__: null, // names come from outside
  snapshot,

  async makeTab({ window, index, url }) {
    const properties = { windowId: window, active: true };
    if (index !== undefined && index !== null) properties.index = index;
    if (url) properties.url = requireAddress(url);
    const tab = await chrome.tabs.create(properties);
    return tab.id;
  },

  async makeWindow({ incognito, url }) {
    const properties = { incognito, focused: true };
    if (url) properties.url = requireAddress(url);
    const window = await chrome.windows.create(properties);
    if (!window) throw new Error("the browser does not show its private windows to the helper");
    await settleInFront(window.id);
    return window.id;
  },

  closeTab: ({ tab }) => chrome.tabs.remove(tab),

  // The browser answers while the window is still closing.
  async closeWindow({ window }) {
    let noteRemoval;
    const gone = new Promise((resolve) => {
      noteRemoval = (id) => id === window && resolve();
      setTimeout(resolve, patienceWithClosings);
    });
    chrome.windows.onRemoved.addListener(noteRemoval, { windowTypes });
    try {
      await chrome.windows.remove(window);
      await gone;
    } finally {
      chrome.windows.onRemoved.removeListener(noteRemoval);
    }
  },

  async activateTab({ tab }) {
    await chrome.tabs.update(tab, { active: true });
  },

  raiseWindow: ({ window }) => bringToFront(window),

  async setGivenName({ window, name }) {
    await chrome.windows.get(window, { windowTypes });
    await isReady;
    if (name) kept.names[window] = name;
    else delete kept.names[window];
    changed();
    await remember();
  },
};

async function perform(name, parameters = {}) {
  try {
    return { value: (await commands[name](parameters)) ?? null };
  } catch (error) {
    const detail = error?.message ?? String(error);
    if (/^No tab with id/.test(detail)) return { fault: "noSuchTab", detail };
    if (/^No window with id/.test(detail)) return { fault: "noSuchWindow", detail };
    return { fault: "refused", detail };
  }
}

globalThis.tabwright = { perform };
