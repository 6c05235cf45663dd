import assert from "node:assert/strict";
import { execFile, spawn } from "node:child_process";
import { EventEmitter, once } from "node:events";
import { readdirSync } from "node:fs";
import { join } from "node:path";
import { before, describe, it } from "node:test";
import { promisify } from "node:util";
import { Agent, limits, program } from "./Agent.js";
import { Page } from "./Page.js";
import { SocketTransport } from "./SocketTransport.js";
import { assertNoMoreTicks, ticking } from "./ticking.js";

const run = async (...words) =>
  JSON.parse((await promisify(execFile)(program, ["run", ...words, "--json"], { timeout: 60_000 })).stdout);

describe("A conversation on the socket of the background host", limits, () => {
  let path;
  const connect = (test, options) => Agent.connect(test, { transport: new SocketTransport(path), ...options });

  before(async () => {
    assert.ok((await run("GetListOfTabs", "--targetContext", "chromium")).length > 0);
    const folder = join(process.env.XDG_RUNTIME_DIR, "tabwright");
    const sockets = readdirSync(folder).filter((name) => name.endsWith(".socket"));
    assert.equal(sockets.length, 1);
    path = join(folder, sockets[0]);
  });

  it("has the same tools, beside the command line", async (test) => {
    const agent = await connect(test);
    const page = await Page.serve(test);
    const tab = await agent.open(page.url);
    const filter = ["--targetContext", "chromium", "--urlFilter", "equals", "--pageURL", page.url];
    const [seen] = await run("GetListOfTabs", ...filter);
    assert.equal(seen.fullID, tab.targetTab);

    const arrival = page.next("/order");
    assert.deepEqual(await agent.call("SetFormFields", { ...tab, inputDict: { who: "Ann" } }), true);
    await agent.call("ClickElement", { ...tab, cssSelector: "#send" });
    await arrival;
    assert.equal(page.sentTo("/order")[0].who, "Ann");
    const { tools } = await agent.client.listTools();
    const own = await Agent.connect(test);
    assert.deepEqual(tools, (await own.client.listTools()).tools);
  });

  it("asks and tells the client that called, and no other", async (test) => {
    const page = await Page.serve(test);
    const questions = [];
    const answering = (name) => () => {
      questions.push(name);
      return { action: "accept", content: { cssSelector: "#late" } };
    };
    const first = await connect(test, { answer: answering("first") });
    const second = await connect(test, { answer: answering("second") });
    const tab = await first.open(page.url);
    const progress = new EventEmitter();
    const reported = once(progress, "report");
    const onprogress = (report) => progress.emit("report", report);
    const late = first.ask("WaitForElement", { ...tab, timeout: "20.0" }, { onprogress });
    await Promise.race([reported, late]);
    await second.call("RunJavascriptInTab", { ...tab, jsCode: "text.id = 'late'" });
    assert.equal((await late).content[0].text, "true");
    await reported;
    assert.deepEqual(questions, ["first"]);
  });

  it("stops the script of a client that goes away", async (test) => {
    const page = await Page.serve(test);
    const staying = await connect(test);
    await staying.open(page.url);
    const leaving = await connect(test);
    const ticked = page.next("/tick");
    const lost = assert.rejects(leaving.ask("RunAppleScript", ticking(page)), /Connection closed/);
    await Promise.race([ticked, lost]);
    await leaving.client.close();
    await lost;
    await assertNoMoreTicks(page);
    assert.deepEqual(await staying.client.ping(), {});
  });

  for (const [signal, exitCode] of [["SIGKILL", null], ["SIGINT", 130]])
    it(`stops the script of a command that ${signal} ends`, async (test) => {
      const page = await Page.serve(test);
      const agent = await connect(test);
      await agent.open(page.url);
      const ticked = page.next("/tick");
      const { script } = ticking(page);
      const words = ["run", "RunAppleScript", "--targetContext", "chromium", "--script", script];
      const command = spawn(program, words, { stdio: "ignore" });
      const ended = once(command, "exit");
      await Promise.race([ticked, ended]);
      command.kill(signal);
      assert.equal((await ended)[0], exitCode);
      await assertNoMoreTicks(page);
    });
});
