// Code in an empty document. Its value goes as JSON has it; null for what JSON can't say, and for an exception.
"use strict";

document.currentScript.remove();

addEventListener("message", async ({ data, ports: [port] }) => {
  let value = null;
  try {
    value = JSON.parse(JSON.stringify((await (0, eval)(data)) ?? null) ?? "null");
  } catch {
    // As in a page whose code fails.
  }
  port.postMessage(value);
});
