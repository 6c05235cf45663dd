import Ajv2020 from "ajv/dist/2020.js";
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { describe, it } from "node:test";
import { Agent, limits, program } from "./Agent.js";

describe("A conversation on standard input and output", limits, () => {
  it("offers every action with schemas of the protocol's dialect", async (test) => {
    const { client } = await Agent.connect(test);
    const { tools, nextCursor } = await client.listTools();
    assert.equal(nextCursor, undefined);
    assert.match(client.getInstructions(), /targetTab/);
    const catalogue = JSON.parse(execFileSync(program, ["actions", "--json"], { encoding: "utf8" }));
    assert.deepEqual(tools.map((tool) => tool.name).sort(), catalogue.map((action) => action.name).sort());
    const ajv = new Ajv2020({ strict: true, allowUnionTypes: true });
    for (const tool of tools) {
      assert.match(tool.name, /^[A-Za-z0-9_.-]{1,128}$/);
      assert.ok(tool.title && tool.description, tool.name);
      const schema = tool.inputSchema;
      assert.ok(ajv.validateSchema(schema) && ajv.compile(schema), `${tool.name}: ${ajv.errorsText()}`);
    }
    const click = ajv.compile(tools.find((tool) => tool.name === "ClickElement").inputSchema);
    assert.ok(click({ cssSelector: "a", targetTab: "chromium:8" }));
    for (const wrong of [{}, { cssSelector: 1 }, { cssSelector: "a", targetTab: 5 }])
      assert.ok(!click(wrong), JSON.stringify(wrong));
  });
});
