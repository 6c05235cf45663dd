import assert from "node:assert/strict";
import { setTimeout as pause } from "node:timers/promises";

/** A script of half a minute that lets the page tell of each of its steps, as parameters of RunAppleScript. */
export function ticking(page) {
  return {
    targetContext: "chromium",
    script: `set pageTab to first tab of front window whose URL is "${page.url}"
repeat 100 times
  tell pageTab to execute javascript "fetch('/tick')"
  delay 0.3
end repeat`,
  };
}

/** Fails when the page goes on to tell of steps; one may have been under way. */
export async function assertNoMoreTicks(page) {
  const before = page.sentTo("/tick").length;
  assert.ok(before > 0);
  await pause(1500);
  assert.ok(page.sentTo("/tick").length <= before + 1, "the script goes on");
}
