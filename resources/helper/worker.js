// The helper inside the browser. It tells the order of windows and tabs, which no protocol outside does, and carries out
// commands on them. Whoever calls it, by whatever road, calls `tabwright.perform(name, parameters)`; the functions below
// know nothing of their callers.
//
// Answers are {value} or {fault, detail}; `perform` never throws. Faults: "noSuchTab", "noSuchWindow", "refused",
// "scriptsNotAllowed", "tabClosed", "tabCrashed".
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
// tab -> the address that it is on its way to. The browser itself tells of none while it makes an error page, nor at
// once where a page sends itself elsewhere.
const destinations = new Map();
// tab -> those that wait for a script in its page, which never ends when the browser keeps the page for a way back.
const leaving = new Map();
// tab -> the answer of its page to a question behind the last script.
const probes = new Map();
let lastProbe = 0;
// Tabs whose pages were there when they were last looked at, until the browser reports anything of them.
const calm = new Set();
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
  calm.clear();
  changes += 1;
  reshaped = changes;
  touched.clear();
  made.clear();
  report();
}

function touch(id) {
  calm.delete(id);
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
chrome.tabs.onRemoved.addListener((id) => {
  destinations.delete(id);
  probes.delete(id);
});
// Only the connected helper may listen to these; other callers hear of navigations by themselves.
const ofWholePages = (listen) => (details) => details.frameId === 0 && listen(details);
chrome.webNavigation?.onBeforeNavigate.addListener(ofWholePages(({ tabId, url }) => {
  destinations.set(tabId, url);
  touch(tabId);
}));
chrome.webNavigation?.onCommitted.addListener(ofWholePages(({ tabId }) => {
  destinations.delete(tabId);
  leaving.get(tabId)?.forEach((leave) => leave());
  touch(tabId);
}));
// Also when the error page is there.
chrome.webNavigation?.onErrorOccurred.addListener(ofWholePages(({ tabId }) => {
  destinations.delete(tabId);
  touch(tabId);
}));
chrome.tabs.onActivated.addListener(({ tabId }) => touch(tabId));
chrome.tabs.onCreated.addListener((tab) => {
  touch(tab.id);
  made.set(tab.id, changes);
});

// ------------------------------------------------------------------------------------------------------- the snapshot

function describeTab(tab) {
  const destination = tab.pendingUrl || destinations.get(tab.id);
  return {
    id: tab.id,
    title: tab.title ?? "",
    url: destination || tab.url || "",
    active: tab.active,
    loading: tab.status === "loading",
    arriving: Boolean(destination),
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

// ---------------------------------------------------------------------------------------------------------- the pages
// For callers without the protocol. A script is sent to a page that is there, and a probe behind it: before that is
// answered the browser has told of whatever the script has brought about.

class Fault extends Error {
  constructor(fault, detail) {
    super(detail);
    this.fault = fault;
  }
}

const switches = () => `chrome://extensions/?id=${chrome.runtime.id}`;

// A document that takes longer to parse counts as there.
const patienceWithParsing = 1000;
// By then the browser has told of whatever a script has brought about in a page that isn't busy.
const patienceWithProbes = 50;
// Between two looks at a tab of which nothing is reported.
const lookAgain = 250;

const after = (milliseconds, value) => new Promise((resolve) => setTimeout(resolve, milliseconds, value));

// The tab once its page is where its navigation leads; undefined when that takes longer than `patience` (milliseconds).
async function arrived(id, patience) {
  const end = Date.now() + patience;
  for (;;) {
    const tab = await chrome.tabs.get(id);
    if (!tab.pendingUrl && !destinations.has(id)) return tab;
    if (Date.now() >= end) return undefined;
    await nextChangeOf(id, Math.min(lookAgain, end - Date.now()));
  }
}

// Resolves at the next change of the tab, or when it is closed, or after `longest` milliseconds.
function nextChangeOf(id, longest) {
  return new Promise((resolve) => {
    const finish = () => {
      clearTimeout(timer);
      chrome.tabs.onUpdated.removeListener(note);
      chrome.webNavigation?.onErrorOccurred.removeListener(noteEnd);
      chrome.tabs.onRemoved.removeListener(note);
      resolve();
    };
    const note = (other) => other === id && finish();
    const noteEnd = ({ tabId }) => note(tabId);
    const timer = setTimeout(finish, longest);
    chrome.tabs.onUpdated.addListener(note);
    chrome.webNavigation?.onErrorOccurred.addListener(noteEnd);
    chrome.tabs.onRemoved.addListener(note);
  });
}

function requireScripts() {
  // The browser takes the whole interface away while its switch is off.
  if (!chrome.userScripts?.execute) throw new Fault("scriptsNotAllowed", switches());
}

// The value of code in the page's own world: {value}, or {kept: why} where the browser lets nobody in.
async function run(tab, code) {
  const outcome = await runNow(tab, code);
  if (outcome.kept) return outcome;
  // Callers who may be told when the probe was answered leave a function, which is called with its number.
  const number = ++lastProbe;
  const answer = script(tab.id, taskLater, "now").catch(() => undefined);
  const probe = Promise.race([answer, after(patienceWithProbes)]).then(() => globalThis.tabwrightSettled?.(number));
  probes.set(tab.id, probe);
  return { ...outcome, probe: number };
}

// Forms are sent, and timers of pages run, in tasks of their own; of a page in the background only after a while.
const taskLater = `new Promise((done) => {
  const { port1, port2 } = new MessageChannel();
  port1.onmessage = () => setTimeout(done, 0);
  port2.postMessage(0);
})`;

// With the code of whoever calls, at once, or when the document is parsed to its end.
function script(tab, code, at) {
  return chrome.userScripts.execute({
    target: { tabId: tab },
    world: "MAIN",
    injectImmediately: at === "now",
    js: [{ code }],
  });
}

// Waits for what earlier scripts in the tabs have brought about; a page that is busy is not waited for.
async function settle(tabs) {
  const all = tabs.map((tab) => probes.get(tab)).filter(Boolean);
  tabs.forEach((tab) => probes.delete(tab));
  if (all.length > 0) await Promise.race([Promise.all(all), after(patienceWithParsing)]);
}

// Resolves when another document takes the place of the tab's; `forget` ends the wait.
function departure(tab) {
  let leave;
  const left = new Promise((resolve) => {
    leave = resolve;
  });
  const waiting = leaving.get(tab) ?? new Set();
  leaving.set(tab, waiting.add(leave));
  const forget = () => {
    waiting.delete(leave);
    if (waiting.size === 0) leaving.delete(tab);
  };
  return { left, forget };
}

async function runNow(tab, code) {
  // Such a page never answers.
  if (/^view-source:/.test(tab.url ?? "")) return { kept: "the source of a page is shown to nobody." };
  const page = departure(tab.id);
  try {
    // The browser holds a script back until the document is parsed, which may be never.
    if (tab.status === "loading") await Promise.race([script(tab.id, "0", "parsed"), after(patienceWithParsing)]);
    const [outcome] = (await Promise.race([script(tab.id, code, "now"), page.left])) ?? [];
    return { value: outcome?.result ?? null };
  } catch (error) {
    const detail = error?.message ?? String(error);
    calm.delete(tab.id);
    const now = await chrome.tabs.get(tab.id).catch(() => undefined);
    if (!now) throw new Fault("tabClosed", "");
    if (now.status === "unloaded") throw new Fault("tabCrashed", "");
    if (/error page/i.test(detail)) return { kept: detail, unloaded: now.url };
    if (/Cannot access|cannot be scripted/i.test(detail)) return { kept: `${detail.replace(/\.?$/, ".")}` };
    if (!/was removed|No frame with id|was closed/i.test(detail)) throw error;
    return { value: null }; // the page went to another address meanwhile
  } finally {
    page.forget();
  }
}

// An empty document, for code in pages that the browser keeps to itself. A document per tab, so that what code leaves in
// it is found again.
async function emptyDocument(id, code) {
  if (!(await chrome.offscreen.hasDocument())) {
    await chrome.offscreen.createDocument({
      url: "empty.html",
      reasons: ["IFRAME_SCRIPTING"],
      justification: "Stands in for pages that the browser keeps to itself.",
    });
  }
  return chrome.runtime.sendMessage({ document: id, code });
}

// ------------------------------------------------------------------------------------------------------- the commands

// An address that is not absolute would be taken as a path within this extension.
async function requireAddress(url) {
  if (!URL.canParse(url)) throw new Error(`“${url}” is not an address`);
  if (/^file:/i.test(url) && !(await chrome.extension.isAllowedFileSchemeAccess()))
    throw new Error(`files are out of reach until “Allow access to file URLs” is switched on at ${switches()}`);
  return url;
}

// Puts a window in front in our order, once it has the focus. The desktop takes a moment for that, during which another
// window still says that it is focused; where the desktop refuses, we do not wait for ever.
async function settleInFront(id) {
  for (let attempt = 0; attempt < 25; attempt += 1) {
    if ((await chrome.windows.get(id, { windowTypes })).focused) break;
    await after(20);
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
    if (url) properties.url = await requireAddress(url);
    const tab = await chrome.tabs.create(properties);
    return tab.id;
  },

  async makeWindow({ incognito, url }) {
    // It would come, and be seen by nobody here.
    if (incognito && !(await chrome.extension.isAllowedIncognitoAccess()))
      throw new Error(`private windows are invisible until “Allow in Incognito” is switched on at ${switches()}`);
    const properties = { incognito, focused: true };
    if (url) properties.url = await requireAddress(url);
    const window = await chrome.windows.create(properties);
    if (!window) throw new Error("it shows no window");
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

  async setBounds({ window, bounds: [left, top, width, height] }) {
    // The browser refuses to move a window that has another shape.
    await chrome.windows.update(window, { state: "normal" });
    await chrome.windows.update(window, { left, top, width, height });
    changed();
  },

  async setShape({ window, state }) {
    await chrome.windows.update(window, { state: "normal" });
    if (state !== "normal") await chrome.windows.update(window, { state });
    changed();
  },

  // True when none is left. Pages may ask before they go.
  async closeAllWindows() {
    try {
      for (const window of await chrome.windows.getAll()) await chrome.windows.remove(window.id).catch(() => undefined);
      for (const end = Date.now() + patienceWithClosings; Date.now() < end; await after(20))
        if ((await chrome.windows.getAll()).length === 0) return true;
      return false;
    } catch {
      return true; // it is ending already
    }
  },

  ping: () => null,

  async describe() {
    const [{ fullVersionList }, incognito, files, { profile }] = await Promise.all([
      navigator.userAgentData.getHighEntropyValues(["fullVersionList"]),
      chrome.extension.isAllowedIncognitoAccess(),
      chrome.extension.isAllowedFileSchemeAccess(),
      chrome.storage.local.get("profile"),
    ]);
    const product = fullVersionList.find(({ brand }) => brand === "Chromium") ?? fullVersionList[0];
    const name = profile ?? crypto.randomUUID();
    if (!profile) await chrome.storage.local.set({ profile: name });
    return {
      helper: chrome.runtime.getManifest().version,
      browser: `${product.brand} ${product.version}`,
      userScripts: Boolean(chrome.userScripts?.execute),
      incognito,
      files,
      profile: name,
    };
  },

  // {value}; {late: true} for a page that hasn't come within `patience`; {kept: why} where the browser lets nobody in.
  async evaluate({ tab, code, patience, settles }) {
    requireScripts();
    if (settles) await settle([tab]);
    if (calm.has(tab)) return run({ id: tab, status: "complete" }, code);
    const state = await arrived(tab, patience);
    if (!state) return { late: true };
    if (state.discarded) throw new Error("the tab’s page is not loaded");
    if (state.status === "unloaded") throw new Fault("tabCrashed", "");
    if (state.status === "complete" && !/^view-source:/.test(state.url ?? "")) calm.add(tab);
    return run(state, code);
  },

  // Why the code can't be read, as text; null where it can.
  syntaxFault: ({ code }) =>
    emptyDocument(0, `try { new Function(${JSON.stringify(code)}); null } catch (error) { String(error) }`),

  evaluateInEmptyDocument: ({ tab, code }) => emptyDocument(tab, code),

  settle: ({ tabs }) => settle(tabs),

  // Done when the navigation has begun.
  async navigate({ tab, url }) {
    await chrome.tabs.update(tab, { url: await requireAddress(url) });
  },

  // By the page's own history: the browser's way back leaves out pages on which the user has done nothing.
  async goInHistory({ tab, step, patience }) {
    const state = (await arrived(tab, patience)) ?? (await chrome.tabs.get(tab));
    const outcome = chrome.userScripts?.execute ? await run(state, `history.go(${step})`) : { kept: "" };
    if (!("kept" in outcome)) return;
    const move = step < 0 ? chrome.tabs.goBack : chrome.tabs.goForward;
    await move(tab).catch((error) => {
      if (!/history/i.test(error?.message ?? "")) throw error; // at the end of it
    });
  },

  async reload({ tab, patience }) {
    await arrived(tab, patience);
    await chrome.tabs.reload(tab);
  },

  async stopLoading({ tab }) {
    requireScripts();
    await runNow({ ...(await chrome.tabs.get(tab)), status: "complete" }, "window.stop()");
    // A page stops what it has asked for itself.
    for (let attempt = 0; (await chrome.tabs.get(tab)).pendingUrl; attempt += 1) {
      if (attempt === 10) throw new Error("a page that has not come yet can be stopped only by the debugging port");
      await after(20);
    }
  },

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
    if (error instanceof Fault) return { fault: error.fault, detail };
    if (/^No tab with id/.test(detail)) return { fault: "noSuchTab", detail };
    if (/^No window with id/.test(detail)) return { fault: "noSuchWindow", detail };
    return { fault: "refused", detail };
  }
}

globalThis.tabwright = { perform };
