// The helper's side of the relay, tried in JavaScriptCore with a stand-in for the browser: its ports, and a clock that
// the test moves on.
#include "support/JavaScriptContext.h"
#include "support/SourceFolder.h"

#include <gtest/gtest.h>

namespace tabwright {
namespace {

class HelperSideTest : public testing::Test {
protected:
  HelperSideTest() {
    context_.evaluate(R"(
      let now = 1e9, timers = [], ports = [], posted = [], performed = [], postError;
      Date.now = () => now;
      var setTimeout = (call, pause) => timers.push({ call, pause });
      var clearTimeout = () => {};
      const listeners = { addListener() {} };
      var chrome = { runtime: { onStartup: listeners, onInstalled: listeners, connectNative(name) {
        const port = { name,
          onMessage: { addListener: (call) => { port.receive = call; } },
          onDisconnect: { addListener: (call) => { port.end = call; } },
          postMessage(message) { if (postError) throw postError(); posted.push(message); } };
        ports.push(port);
        return port;
      } } };
      var tabwright = { perform: async (name, parameters) => { performed.push([name, parameters]); return { value: 5 }; } };
      // The relay ends for this reason; the pause until the next attempt, which is then made.
      function end(reason) {
        chrome.runtime.lastError = { message: reason };
        timers = [];
        ports.at(-1).end();
        if (timers.length !== 1) return timers.length;
        const [{ call, pause }] = timers;
        now += pause;
        call();
        return pause;
      }
      function receive(...messages) { messages.forEach((message) => ports.at(-1).receive(message)); }
    )");
    context_.evaluate(testsupport::sourceText("resources/helper/relay.js"));
  }
  std::string evaluate(const std::string& code) { return context_.evaluate(code); }

  const testsupport::JavaScriptContext context_;
};

TEST_F(HelperSideTest, WaitsLongerForEachRelayThatDoesNotStay) {
  EXPECT_EQ(evaluate("Array.from({ length: 8 }, () => end('Native host has exited.'))"),
            "[200,400,800,1600,3200,6400,10000,10000]");
  EXPECT_EQ(evaluate("ports.length"), "9");
  // One that was of use, and one that has stayed.
  EXPECT_EQ(evaluate("receive({ client: 1, gone: true }); [end(''), end('')]"), "[200,400]");
  EXPECT_EQ(evaluate("now += 10001; [end(''), end('')]"), "[200,400]");
}

TEST_F(HelperSideTest, LooksForAMissingRelayOnlyWhenSomethingHappensAndSeldom) {
  EXPECT_EQ(evaluate("end('Specified native messaging host not found.')"), "0");
  EXPECT_EQ(evaluate("for (let change = 0; change < 100; ++change) tabwrightChanged('1'); now += 9999;"
                     "tabwrightChanged('1'); ports.length"),
            "1");
  EXPECT_EQ(evaluate("now += 1; tabwrightChanged('1'); tabwrightChanged('2'); ports.length"), "2");
  EXPECT_EQ(evaluate("posted"), R"([{"client":0,"message":{"changes":"2"}}])");
}

TEST_F(HelperSideTest, AnswersMessagesThatItHasPutTogether) {
  evaluate(R"(receive({ client: 3, text: '{"id":7,"name":"a', more: true }, { client: 4, text: '{"id":1,', more: true },
                      { client: 5, text: '{"id":2,', more: true }, { client: 5, gone: true },
                      { client: 4, text: '"name":"c"}', more: false },
                      { client: 3, text: 'b","parameters":{"p":1}}', more: false },
                      { client: 5, text: '"name":"d"}', more: false }))");
  EXPECT_EQ(evaluate("performed"), R"([["c",null],["ab",{"p":1}]])");
  EXPECT_EQ(evaluate("posted.sort((left, right) => left.client - right.client)"
                     "  .map(({ client, message: { id, value, fault } }) => [client, id, value ?? fault])"),
            R"([[3,7,5],[4,1,5],[5,0,"malformed"]])");
}

TEST_F(HelperSideTest, TellsWhatTheBrowserDoesNotLetOut) {
  evaluate("postError = () => { postError = undefined; return new Error('too much'); };"
           R"(receive({ client: 1, text: '{"id":7,"name":"a"}', more: false }))");
  EXPECT_EQ(evaluate("posted"), R"([{"client":1,"message":{"id":7,"fault":"refused","detail":"too much"}}])");
}

TEST_F(HelperSideTest, LeavesAnswersToARelayThatIsGone) {
  evaluate(R"(const before = ports.at(-1);
              receive({ client: 1, text: '{"id":7,"name":"a"}', more: false }); end(''))");
  EXPECT_EQ(evaluate("posted"), "[]");
}

} // namespace
} // namespace tabwright
