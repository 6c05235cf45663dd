// The helper's way out of the browser: `tabwright-relay`, which the browser starts for us and which brings messages of
// the clients at its socket, and takes them ours.
//
// From it come {client, text, more}: pieces of a client's message, which is JSON once they are joined, and
// {client, gone} when a client has left. To it go {client, message}, in this order of the properties, since it reads no
// further than that; client 0 is everyone. A request {id, name, parameters} is answered with {id, value} or
// {id, fault, detail}; each change that the browser reports goes to everyone as {changes}, and so does {settled}.
//
// A worker with an open port is never stopped. Where the relay ends another one is started, after a pause that grows
// while none stays.
"use strict";

const relayName = "com.tabwright.relay";
const shortestPause = 200; // milliseconds, as all here
const longestPause = 10_000;

const relay = {
  port: undefined,
  pause: shortestPause, // before the next attempt
  lastAttempt: 0,
  timer: undefined,
};

function connect() {
  if (relay.port) return;
  clearTimeout(relay.timer);
  relay.timer = undefined;
  relay.lastAttempt = Date.now();
  const port = chrome.runtime.connectNative(relayName);
  relay.port = port;
  const begun = new Map(); // client -> the pieces of the message that it is sending
  port.onMessage.addListener(({ client, text, more, gone }) => {
    relay.pause = shortestPause;
    if (gone) {
      begun.delete(client);
      return;
    }
    const pieces = begun.get(client) ?? [];
    pieces.push(text);
    if (more) {
      begun.set(client, pieces);
      return;
    }
    begun.delete(client);
    answer(port, client, pieces.join(""));
  });
  port.onDisconnect.addListener(() => {
    relay.port = undefined;
    connectLater(chrome.runtime.lastError?.message ?? "");
  });
}

function connectLater(reason) {
  if (Date.now() - relay.lastAttempt > longestPause) relay.pause = shortestPause; // it had been there
  const pause = relay.pause;
  relay.pause = Math.min(pause * 2, longestPause);
  // With none installed only the browser's next event is reason to look again, and not each of them.
  if (/not found/.test(reason)) relay.pause = longestPause;
  else relay.timer = setTimeout(connect, pause);
}

function connectByEvent() {
  if (!relay.timer && Date.now() - relay.lastAttempt >= relay.pause) connect();
}

function post(port, client, message) {
  // The port of a relay that has ended takes nothing; its client hears of that by itself.
  if (port === relay.port) port?.postMessage({ client, message });
}

async function answer(port, client, text) {
  const [id, outcome] = await outcomeOf(text);
  try {
    post(port, client, { id, ...outcome });
  } catch (error) {
    // The browser bounds what goes out at once.
    post(port, client, { id, fault: "refused", detail: error?.message ?? String(error) });
  }
}

async function outcomeOf(text) {
  let request;
  try {
    request = JSON.parse(text);
  } catch (error) {
    return [0, { fault: "malformed", detail: error.message }];
  }
  const { id, name, parameters } = request ?? {};
  if (!Number.isSafeInteger(id) || typeof name !== "string")
    return [0, { fault: "malformed", detail: "a request has a whole number as id, and a name" }];
  return [id, await tabwright.perform(name, parameters)];
}

// Called for each change that the browser reports.
globalThis.tabwrightChanged = (changes) => {
  if (relay.port) post(relay.port, 0, { changes });
  else connectByEvent();
};

// Called when the browser has told of all that a script has brought about, with the number that its answer had.
globalThis.tabwrightSettled = (settled) => {
  if (relay.port) post(relay.port, 0, { settled });
};

// Listening to these is what lets the browser start the worker for them.
chrome.runtime.onStartup.addListener(connectByEvent);
chrome.runtime.onInstalled.addListener(connectByEvent);
connect();
