import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { text } from "node:stream/consumers";
import { Agent, limits, program } from "./Agent.js";
import { Page } from "./Page.js";
import { assertNoMoreTicks, ticking } from "./ticking.js";

describe("A call that takes its time", limits, () => {
  it("tells of its progress, and doesn't hold up other calls", async (test) => {
    const agent = await Agent.connect(test);
    const page = await Page.serve(test);
    const tab = await agent.open(page.url);
    const reports = [];
    const wanted = { ...tab, cssSelector: "#late", timeout: "20.0" };
    const answer = await new Promise((resolve, reject) => {
      const onprogress = (report) => {
        if (reports.push(report) === 2)
          agent.call("RunJavascriptInTab", { ...tab, jsCode: "text.id = 'late'" }).catch(reject);
      };
      agent.call("WaitForElement", wanted, { onprogress }).then(resolve, reject);
    });
    assert.equal(answer, true);
    assert.ok(reports.length >= 2);
    reports.reduce((before, { progress }) => (assert.ok(progress > before), progress), 0);
    for (const { message } of reports) assert.match(message, /WaitForElement/);
  });

  it("really stops when it is cancelled", async (test) => {
    const agent = await Agent.connect(test);
    const page = await Page.serve(test);
    await agent.open(page.url);
    const abort = new AbortController();
    const ticked = page.next("/tick");
    const options = { signal: abort.signal, onprogress: () => {} }; // a report after the end would be complained of
    const call = agent.ask("RunAppleScript", ticking(page), options);
    await Promise.race([ticked, call]);
    abort.abort("enough");
    await assert.rejects(call, /enough/);
    // The server takes messages in order: the call is cancelled when this is answered.
    assert.ok((await agent.call("GetListOfTabs", { targetContext: "chromium" })).length > 0);
    await assertNoMoreTicks(page);
  });

  it("stops when its client goes away, and so does the server", async (test) => {
    const page = await Page.serve(test);
    const watching = await Agent.connect(test);
    await watching.open(page.url);
    const command = ["-c", '"$0" mcp; echo "exit code $?" >&2', program];
    const transport = new StdioClientTransport({ command: "sh", args: command, env: process.env, stderr: "pipe" });
    const said = text(transport.stderr);
    const leaving = await Agent.connect(test, { transport });
    const ticked = page.next("/tick");
    const lost = assert.rejects(leaving.ask("RunAppleScript", ticking(page)), /Connection closed/);
    await Promise.race([ticked, lost]);
    await leaving.client.close();
    assert.equal(await said, "exit code 0\n");
    await lost;
    await assertNoMoreTicks(page);
  });
});
