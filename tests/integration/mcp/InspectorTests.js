import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { describe, it } from "node:test";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";
import { limits, program } from "./Agent.js";
import { Page } from "./Page.js";

const inspector = fileURLToPath(new URL("node_modules/.bin/mcp-inspector", import.meta.url));

async function inspect(...words) {
  const command = [inspector, "--cli", program, "mcp", ...words];
  const { stdout } = await promisify(execFile)(process.execPath, command, { timeout: 60_000 });
  return JSON.parse(stdout);
}

function call(tool, parameters) {
  const pairs = Object.entries(parameters).flatMap(([name, value]) => ["--tool-arg", `${name}=${value}`]);
  return inspect("--method", "tools/call", "--tool-name", tool, ...pairs);
}

describe("The inspector, whose arguments are words", limits, () => {
  it("lists the tools", async () => {
    const { tools } = await inspect("--method", "tools/list");
    const { inputSchema } = tools.find(({ name }) => name === "GetListOfTabs");
    assert.deepEqual(inputSchema.properties.listElements.enum, ["all", "first", "last", "random"]);
  });

  it("fills in a form", async (test) => {
    const page = await Page.serve(test);
    const newTab = { targetContext: "chromium", targetSelection: "newTabInFrontWindow", newURL: page.url };
    const resultOf = ({ content }) => JSON.parse(content[0].text);
    const { fullID } = resultOf(await call("OpenInTab", newTab));
    const tab = { targetTab: fullID };
    test.after(() => call("CloseTab", tab));

    const filter = { targetContext: "chromium", urlFilter: "equals", pageURL: page.url };
    const list = resultOf(await call("GetListOfTabs", filter));
    assert.deepEqual(list.map((found) => found.fullID), [fullID]);

    const arrival = page.next("/order");
    const inputDict = '{"who": "Ann", "note": "1 = 1"}';
    await call("SetFormFields", { ...tab, inputDict, shouldFireChangeEvent: "true" });
    await call("ClickElement", { ...tab, cssSelector: "#send" });
    await arrival;
    assert.deepEqual(page.sentTo("/order"), [{ who: "Ann", greeting: "Hello", note: "1 = 1" }]);
  });
});
