// Hands code to a document of its own for each tab, and its value back. Those documents are sandboxed, so that code runs
// in them as it does in a page, with nothing of the helper's in reach.
"use strict";

const frames = new Map(); // tab -> a promise of its frame
// Of more tabs the one used longest ago begins anew.
const most = 16;

function frameOf(tab) {
  const known = frames.get(tab);
  frames.delete(tab);
  const frame = known ?? makeFrame();
  frames.set(tab, frame);
  if (frames.size > most) {
    const [oldest, old] = frames.entries().next().value;
    frames.delete(oldest);
    old.then((element) => element.remove());
  }
  return frame;
}

function makeFrame() {
  const element = document.createElement("iframe");
  element.src = "emptyPage.html";
  const loaded = new Promise((resolve) => element.addEventListener("load", () => resolve(element), { once: true }));
  document.documentElement.append(element);
  return loaded;
}

chrome.runtime.onMessage.addListener(({ document: tab, code }, _sender, answer) => {
  if (code === undefined) return false;
  frameOf(tab).then((frame) => {
    const { port1, port2 } = new MessageChannel();
    port1.onmessage = ({ data }) => answer(data);
    frame.contentWindow.postMessage(code, "*", [port2]);
  });
  return true; // the answer comes later
});
