import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { Agent, limits } from "./Agent.js";
import { Page } from "./Page.js";

describe("A missing value", limits, () => {
  it("is asked for where the client can ask", async (test) => {
    const questions = [];
    const answer = ({ params }) => {
      questions.push(params);
      return { action: "accept", content: { cssSelector: "#press" } };
    };
    const agent = await Agent.connect(test, { answer });
    const page = await Page.serve(test);
    const tab = await agent.open(page.url);
    const pressed = page.next("/pressed");
    const { isError } = await agent.ask("ClickElement", tab);
    assert.ok(!isError);
    await pressed;
    assert.equal(questions.length, 1);
    assert.ok(questions[0].message);
    assert.deepEqual(questions[0].requestedSchema.required, ["cssSelector"]);
    assert.equal(questions[0].requestedSchema.properties.cssSelector.type, "string");

    await agent.call("ClickElement", { ...tab, cssSelector: "#text" });
    assert.equal(questions.length, 1);
  });

  it("isn't asked for any longer when the call is cancelled", async (test) => {
    let ask;
    const asked = new Promise((resolve) => (ask = resolve));
    const answer = (_, { signal }) =>
      new Promise((_, withdraw) => {
        signal.addEventListener("abort", () => withdraw(new Error("withdrawn")));
        ask(signal);
      });
    const agent = await Agent.connect(test, { answer });
    const abort = new AbortController();
    const call = agent.ask("ClickElement", { targetContext: "chromium" }, { signal: abort.signal });
    const question = await asked;
    abort.abort();
    await assert.rejects(call);
    if (!question.aborted) await new Promise((resolve) => question.addEventListener("abort", resolve));
    assert.ok((await agent.call("GetBrowserReference", { targetContext: "chromium" })).id);
  });
});
