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

    assert.equal(await agent.call("ClickElement", { ...tab, cssSelector: "#text" }), "Done.");
    assert.equal(questions.length, 1);
  });
});
