import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { ElicitRequestSchema } from "@modelcontextprotocol/sdk/types.js";
import { AjvJsonSchemaValidator } from "@modelcontextprotocol/sdk/validation/ajv";
import assert from "node:assert/strict";

export const program = process.env.TABWRIGHT_TESTED;

/** What a server that hangs costs at most: every test of a suite has the suite's limit. */
export const limits = { timeout: 120_000 };

/** `tabwright mcp` in the same surroundings as the browser; of its own the SDK would hand on HOME and PATH alone. */
export function standardStreams() {
  return new StdioClientTransport({ command: program, args: ["mcp"], env: process.env, stderr: "inherit" });
}

/** An agent as others write them: the SDK's client, which goes by the schemas that the server gives. */
export class Agent {
  client;
  #inputs = new Map();
  #opened = [];

  /**
   * Connects for the length of a test. `answer` is how the agent's user answers questions; without it the client can't
   * ask. What the SDK's client finds wrong with the server's messages fails the test.
   */
  static async connect(test, { transport = standardStreams(), capabilities = {}, answer } = {}) {
    const agent = new Agent();
    if (answer) capabilities = { elicitation: {}, ...capabilities };
    agent.client = new Client({ name: "tests", version: "1" }, { capabilities });
    if (answer) agent.client.setRequestHandler(ElicitRequestSchema, answer);
    const complaints = [];
    agent.client.onerror = (error) => complaints.push(error.message);
    test.after(async () => {
      for (const tab of agent.#opened) await agent.ask("CloseTab", tab);
      await agent.client.close();
      assert.deepEqual(complaints, []);
    });
    await agent.client.connect(transport);
    const validator = new AjvJsonSchemaValidator();
    for (const { name, inputSchema } of (await agent.client.listTools()).tools)
      agent.#inputs.set(name, validator.getValidator(inputSchema));
    return agent;
  }

  /** Calls a tool and gives the whole answer, which may be an error. */
  ask(name, parameters = {}, options = {}) {
    return this.client.callTool({ name, arguments: parameters }, undefined, options);
  }

  /** Calls a tool with arguments that fit its schema, and gives its result; for an action without one, its text. */
  async call(name, parameters = {}, options = {}) {
    const { valid, errorMessage } = this.#inputs.get(name)(parameters);
    assert.ok(valid, `${name} ${JSON.stringify(parameters)}: ${errorMessage}`);
    const answer = await this.ask(name, parameters, options);
    assert.ok(!answer.isError, `${name}: ${answer.content[0]?.text}`);
    const { text } = answer.content[0];
    return text === "Done." ? text : JSON.parse(text);
  }

  /** Opens a page in a new tab for the length of the test, and gives the parameters that aim an action at it. */
  async open(url) {
    const wanted = { targetContext: "chromium", targetSelection: "newTabInFrontWindow", newURL: url };
    const { fullID } = await this.call("OpenInTab", wanted);
    const tab = { targetTab: fullID };
    this.#opened.push(tab);
    const loaded = await this.call("WaitForTabToFinishLoading", { ...tab, readyState: "complete" });
    assert.equal(loaded, true);
    return tab;
  }
}
