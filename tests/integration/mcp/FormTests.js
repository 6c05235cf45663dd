import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { Agent, limits } from "./Agent.js";
import { Page } from "./Page.js";

describe("An agent on a page", limits, () => {
  it("fills in a form and sends it, with results that feed further calls", async (test) => {
    const agent = await Agent.connect(test);
    const page = await Page.serve(test);
    const opened = await agent.open(page.url);
    const tabs = await agent.call("GetListOfTabs", {
      targetContext: "chromium",
      urlFilter: "equals",
      pageURL: page.url,
    });
    assert.equal(tabs.length, 1);
    assert.equal(tabs[0].title, "Order form");
    assert.equal(tabs[0].fullID, opened.targetTab.fullID);

    const tab = { tabSelection: "specificTab", targetTab: tabs[0] };
    const order = { who: "Ann “Ü” <b>\\n", greeting: "Good morning", loud: true, note: "2 & 3" };
    assert.deepEqual(await agent.call("SetFormFields", { ...tab, inputDict: order }), true);
    const loud = await agent.ask("GetFormFieldValue", { ...tab, fieldTargetSpec: "loud" });
    assert.equal(loud.content[0].text, "checked");
    const arrival = page.next("/order");
    assert.equal(await agent.call("ClickElement", { ...tab, cssSelector: "#send" }), undefined);
    await arrival;
    assert.deepEqual(page.sentTo("/order"), [{ ...order, loud: "yes" }]);

    assert.deepEqual(await agent.call("WaitForElement", { ...tab, cssSelector: "#thanks" }), true);
    const details = await agent.call("GetDetailsOfTab", tab);
    assert.equal(details.title, "Thank you");
    assert.equal(details.textContent.trim(), "Thank you.");
    assert.match(details.url, /\/order\?who=Ann/);
    const [window] = await agent.call("GetListOfWindows", { targetContext: "chromium" });
    assert.ok(window.fullID);
    assert.equal((await agent.call("FocusWindow", { targetWindow: window })).fullID, window.fullID);

    const closed = await agent.call("CloseTab", { ...tab, targetTab: tabs[0].fullID });
    assert.equal(closed.url, details.url);
    const left = await agent.call("GetListOfTabs", { targetContext: "chromium" });
    assert.ok(left.length > 0 && left.every((other) => other.fullID !== tabs[0].fullID));
  });
});
