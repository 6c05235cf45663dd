import { McpError } from "@modelcontextprotocol/sdk/types.js";
import Ajv2020 from "ajv/dist/2020.js";
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { describe, it } from "node:test";
import { Agent, limits, program, standardStreams } from "./Agent.js";
import { Page } from "./Page.js";

describe("A conversation on standard input and output", limits, () => {
  it("begins with a handshake", async (test) => {
    const transport = standardStreams();
    let revision;
    transport.setProtocolVersion = (agreed) => (revision = agreed);
    const { client } = await Agent.connect(test, { transport });
    assert.equal(revision, "2025-11-25");
    const version = execFileSync(program, ["--version"], { encoding: "utf8" });
    assert.equal(client.getServerVersion().name, "tabwright");
    assert.ok(version.includes(client.getServerVersion().version), version);
    assert.deepEqual(Object.keys(client.getServerCapabilities()).sort(), ["logging", "tools"]);
    assert.match(client.getInstructions(), /targetTab/);
    assert.deepEqual(await client.ping(), {});
  });

  it("offers every action with schemas of the protocol's dialect", async (test) => {
    const { client } = await Agent.connect(test);
    const { tools, nextCursor } = await client.listTools();
    assert.equal(nextCursor, undefined);
    const catalogue = JSON.parse(execFileSync(program, ["actions", "--json"], { encoding: "utf8" }));
    assert.deepEqual(tools.map((tool) => tool.name).sort(), catalogue.map((action) => action.name).sort());
    const ajv = new Ajv2020({ strict: true, allowUnionTypes: true });
    for (const tool of tools) {
      assert.match(tool.name, /^[A-Za-z0-9_.-]{1,128}$/);
      assert.ok(tool.title && tool.description.startsWith(tool.title), tool.name);
      assert.equal(tool.annotations.readOnlyHint && tool.annotations.destructiveHint, false, tool.name);
      const schema = tool.inputSchema;
      assert.ok(ajv.validateSchema(schema) && ajv.compile(schema), `${tool.name}: ${ajv.errorsText()}`);
    }
    const click = ajv.compile(tools.find((tool) => tool.name === "ClickElement").inputSchema);
    assert.ok(click({ cssSelector: "a", targetTab: "chromium:8" }));
    for (const wrong of [{}, { cssSelector: 1 }, { cssSelector: "a", where: "" }, { cssSelector: "a", targetTab: 5 }])
      assert.ok(!click(wrong), JSON.stringify(wrong));
  });

  it("tells of what fails, and by which kind", async (test) => {
    const agent = await Agent.connect(test);
    const page = await Page.serve(test);
    const tab = await agent.open(page.url);
    const failureOf = async (tool, parameters) => {
      const { isError, content, _meta } = await agent.ask(tool, parameters);
      assert.equal(isError, true, tool);
      return { text: content[0].text, ..._meta["com.tabwright/failure"] };
    };
    const absent = await failureOf("WaitForElement", { ...tab, cssSelector: "#absent", timeout: "p02" });
    assert.equal(absent.type, "AppleScriptRuntimeError");
    assert.equal(absent.case, "pageElementNotFound");
    assert.match(absent.text, /element could not be found/);
    const gone = await failureOf("ReloadTab", { ...tab, targetTab: "chromium:1" });
    assert.equal(gone.case, "tabNotFound");
    const script = 'error "Ouch" number 7';
    const thrown = await failureOf("RunAppleScript", { targetContext: "chromium", script });
    assert.equal(thrown.number, 7);
    assert.match(thrown.text, /Ouch/);

    const misspelt = await failureOf("ClickElement", { ...tab, cssSelectr: "#press" });
    assert.equal(misspelt.case, "wrongUse");
    assert.match(misspelt.text, /cssSelectr.*cssSelector/);
    const unknown = await failureOf("GetListOfTabs", { targetContext: "netscape" });
    assert.equal(unknown.case, "wrongUse");
    assert.match(unknown.text, /netscape.*chromium/);
    assert.deepEqual(page.sentTo("/pressed"), []);

    const hasCode = (code) => (error) => error instanceof McpError && error.code === code;
    await assert.rejects(agent.ask("NoSuchTool"), hasCode(-32602));
    await assert.rejects(agent.client.request({ method: "no/such/method" }, {}), hasCode(-32601));
  });
});
