#include "devtools/Connection.h"
#include "devtools/Limits.h"
#include "support/PageServer.h"
#include "support/ScriptedBrowser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace tabwright::devtools {

using platform::CallLimits;
using support::ScriptedBrowser;
using testing::HasSubstr;
using namespace std::chrono_literals;
using Wire = ScriptedBrowser::Wire;
using Call = boost::json::object;

namespace {

CallLimits soon() {
  return {std::chrono::steady_clock::now() + 20ms, {}};
}

struct Fault {
  DevToolsFault kind;
  std::string detail;
};

template <class Callable>
Fault faultOf(Callable&& call) {
  try {
    call();
  } catch (const DevToolsFailure& failure) {
    return {failure.kind(), failure.detail()};
  }
  ADD_FAILURE() << "no DevToolsFailure was thrown";
  return {DevToolsFault::refused, {}};
}

/// Answers each call with its own method and parameters.
void echo(Wire& wire, const Call& call) {
  wire.answer(call, {{"method", call.at("method")}, {"params", call.at("params")}});
}

Endpoint endpointOf(const std::string& url) {
  const std::string rest = url.substr(std::string("http://127.0.0.1:").size());
  const std::size_t slash = rest.find('/');
  return {static_cast<std::uint16_t>(std::stoi(rest.substr(0, slash))), rest.substr(slash)};
}

} // namespace

TEST(Connection, AnswersFindTheirCallsInWhateverOrderTheyCome) {
  std::vector<Call> held;
  ScriptedBrowser browser([&](Wire& wire, const Call& call) {
    held.push_back(call);
    if (held.size() < 3)
      return;
    for (auto each = held.rbegin(); each != held.rend(); ++each)
      echo(wire, *each);
  });
  const auto connection = Connection::open(browser.endpoint(), limits());
  const auto one = connection->send("One", {{"n", 1}});
  const auto two = connection->send("Two", {{"n", 2}}, "session");
  EXPECT_EQ(connection->call("Three", {}, {}, limits()).at("method"), "Three");
  EXPECT_EQ(one->result(limits()).at("params").at("n"), 1);
  EXPECT_EQ(two->result(limits()).at("method"), "Two");
  EXPECT_EQ(held.at(1).at("sessionId"), "session");
  EXPECT_FALSE(held.at(0).contains("sessionId"));
  EXPECT_EQ(connection->traffic().sent, 3U);
  EXPECT_EQ(connection->traffic().received, 3U);
}

TEST(Connection, AnErrorIsRefusedWithTheMethodAndTheBrowsersWords) {
  ScriptedBrowser browser([](Wire& wire, const Call& call) { wire.refuse(call, -32601, "wasn't found"); });
  const auto connection = Connection::open(browser.endpoint(), limits());
  const Fault fault = faultOf([&] { connection->call("Foo.bar", {}, {}, limits()); });
  EXPECT_EQ(fault.kind, DevToolsFault::refused);
  EXPECT_EQ(fault.detail, "Foo.bar: wasn't found");
  EXPECT_EQ(connection->send("Foo.bar", {})->await(limits()).error().code, -32601);
}

TEST(Connection, EventsGoToTheListenerOfTheirSession) {
  ScriptedBrowser browser([](Wire& wire, const Call& call) {
    wire.report("A", {{"n", 1}});
    wire.report("B", {}, "s1");
    wire.report("C", {}, "s2");
    wire.report("Target.detachedFromTarget", {{"sessionId", "s1"}});
    wire.report("D", {}, "s3");
    echo(wire, call);
  });
  const auto connection = Connection::open(browser.endpoint(), limits());
  std::vector<std::string> heard;
  connection->listen("", [&](const Event& event) { heard.push_back("browser " + std::string(event.method)); });
  connection->listen("s1", [&](const Event& event) { heard.push_back("s1 " + std::string(event.method)); });
  connection->listen("s3", [&](const Event& event) { heard.push_back("s3 " + std::string(event.method)); });
  connection->stopListening("s3");
  connection->call("Go", {}, {}, limits());
  EXPECT_THAT(heard, testing::ElementsAre("browser A", "s1 B", "s1 Target.detachedFromTarget"));
}

TEST(Connection, WhenTheChannelDiesEveryWaiterHearsWhy) {
  ScriptedBrowser browser([](Wire& wire, const Call& call) {
    if (call.at("method") == "Cut")
      wire.cut();
  });
  const auto connection = Connection::open(browser.endpoint(), limits());
  std::vector<std::future<Fault>> waiters;
  for (int index = 0; index < 4; ++index) {
    waiters.push_back(std::async(std::launch::async, [pending = connection->send("Wait", {})] {
      return faultOf([&] { pending->result(limits()); });
    }));
  }
  connection->send("Cut", {});
  for (std::future<Fault>& waiter : waiters) {
    const Fault fault = waiter.get();
    EXPECT_EQ(fault.kind, DevToolsFault::lost);
    EXPECT_EQ(fault.detail, "the browser ended it");
  }
  EXPECT_FALSE(connection->isOpen());
  EXPECT_EQ(faultOf([&] { connection->call("Later", {}, {}, limits()); }).detail, "the browser ended it");
}

TEST(Connection, WhatIsNoMessageBreaksIt) {
  const std::vector<std::function<void(Wire&)>> misdeeds{
      [](Wire& wire) { wire.sendText("not JSON"); },
      [](Wire& wire) { wire.sendText("[1, 2]"); },
      [](Wire& wire) { wire.sendText("{}"); },
      [](Wire& wire) { wire.sendText(R"({"id": "one", "result": {}})"); },
      [](Wire& wire) { wire.sendText(R"({"id": 1, "result": 5})"); },
      [](Wire& wire) { wire.sendText(R"({"id": 1, "error": {}})"); },
      [](Wire& wire) { wire.sendText(R"({"method": "A", "params": []})"); },
      [](Wire& wire) { wire.sendText(std::string(100000, '[')); },
      [](Wire& wire) { wire.sendBytes(std::string(64, '\xff')); },
      [](Wire& wire) { wire.sendBytes("HTTP/1.1 500 No\r\n\r\n"); },
  };
  for (std::size_t index = 0; index < misdeeds.size(); ++index) {
    ScriptedBrowser browser([&](Wire& wire, const Call&) { misdeeds[index](wire); });
    const auto connection = Connection::open(browser.endpoint(), limits());
    EXPECT_EQ(faultOf([&] { connection->call("Go", {}, {}, limits()); }).kind, DevToolsFault::lost) << index;
  }
}

TEST(Connection, ALargeMessageComesWholeAndOneBeyondTheBoundBreaksIt) {
  const auto script = [](Wire& wire, const Call& call) {
    wire.answer(call, {{"text", std::string(call.at("params").at("size").to_number<std::size_t>(), 'x')}});
  };
  ScriptedBrowser browser(script);
  Connection::Bounds bounds;
  bounds.received = 10'000'000;
  const auto connection = Connection::open(browser.endpoint(), limits(), bounds);
  const auto result = connection->call("Get", {{"size", 9'000'000}}, {}, limits());
  EXPECT_EQ(result.at("text").as_string().size(), 9'000'000U);
  const Fault fault = faultOf([&] { connection->call("Get", {{"size", 10'000'001}}, {}, limits()); });
  EXPECT_EQ(fault.kind, DevToolsFault::lost);
  EXPECT_EQ(fault.detail, "it sent a message that is too large");
}

TEST(Connection, AMessageTooLargeToSendIsRefusedAndHarmsNothing) {
  ScriptedBrowser browser(echo);
  Connection::Bounds bounds;
  bounds.sent = 1000;
  const auto connection = Connection::open(browser.endpoint(), limits(), bounds);
  const Fault fault = faultOf([&] { connection->call("Put", {{"text", std::string(1000, 'x')}}, {}, limits()); });
  EXPECT_EQ(fault.kind, DevToolsFault::refused);
  EXPECT_THAT(fault.detail, HasSubstr("too large"));
  EXPECT_EQ(connection->call("Put", {}, {}, limits()).at("method"), "Put");
}

TEST(Connection, DeadlinesAndStopsEndACallAndLateAnswersHarmNothing) {
  std::vector<Call> unanswered;
  ScriptedBrowser browser([&](Wire& wire, const Call& call) {
    if (call.at("method") == "Slow") {
      unanswered.push_back(call);
      return;
    }
    for (const Call& late : unanswered)
      echo(wire, late);
    echo(wire, call);
  });
  Connection::Bounds bounds;
  bounds.call = 20ms; // what a call without deadline gets
  const auto connection = Connection::open(browser.endpoint(), limits(), bounds);
  EXPECT_EQ(faultOf([&] { connection->call("Slow", {}, {}, soon()); }).kind, DevToolsFault::timedOut);
  EXPECT_EQ(faultOf([&] { connection->call("Slow", {}, {}, {}); }).detail, "Slow");

  std::stop_source source;
  const std::jthread stopper([&] { source.request_stop(); });
  const CallLimits stoppable{limits().deadline, source.get_token()};
  EXPECT_EQ(faultOf([&] { connection->call("Slow", {}, {}, stoppable); }).kind, DevToolsFault::stopped);
  EXPECT_EQ(connection->call("Quick", {}, {}, limits()).at("method"), "Quick");
}

TEST(Connection, ABrowserThatAnswersNothingAtAllIsToldFromOneThatIsSlow) {
  std::vector<Call> held;
  bool isFrozen = false;
  ScriptedBrowser browser([&](Wire& wire, const Call& call) {
    held.push_back(call);
    isFrozen = isFrozen || call.at("method") == "Freeze";
    if (isFrozen || call.at("method") == "Slow")
      return;
    for (const Call& each : std::exchange(held, {}))
      echo(wire, each);
  });
  Connection::Bounds bounds;
  bounds.silence = 1s;
  const auto connection = Connection::open(browser.endpoint(), limits(), bounds);
  EXPECT_EQ(connection->call("Slow", {}, {}, limits()).at("method"), "Slow") << "answered with the plain question";
  const Fault fault = faultOf([&] { connection->call("Freeze", {}, {}, limits()); });
  EXPECT_EQ(fault.kind, DevToolsFault::notAnswering);
  EXPECT_EQ(fault.detail, "1 seconds");
  EXPECT_TRUE(connection->isOpen());
  EXPECT_EQ(faultOf([&] { connection->call("Again", {}, {}, limits()); }).kind, DevToolsFault::notAnswering);
}

TEST(Connection, OpeningFailsInTimeWhereNobodyAnswersRightly) {
  support::PageServer server; // speaks HTTP only
  server.neverAnswer("/silent");
  EXPECT_EQ(faultOf([&] { Connection::open(endpointOf(server.url("/none")), limits()); }).kind,
            DevToolsFault::unreachable);
  EXPECT_EQ(faultOf([&] { Connection::open(endpointOf(server.url("/silent")), soon()); }).kind,
            DevToolsFault::timedOut);
  EXPECT_EQ(faultOf([&] { Connection::open(endpointOf(server.url("/silent")), limits(), {.silence = 20ms}); }).kind,
            DevToolsFault::notAnswering);
  std::stop_source source;
  source.request_stop();
  EXPECT_EQ(faultOf([&] {
              Connection::open(endpointOf(server.url("/silent")), {limits().deadline, source.get_token()});
            }).kind,
            DevToolsFault::stopped);

  Endpoint closed;
  {
    const support::PageServer gone;
    closed = endpointOf(gone.url("/"));
  }
  EXPECT_EQ(faultOf([&] { Connection::open(closed, limits()); }).kind, DevToolsFault::unreachable);
}

TEST(Connection, ManyThreadsShareIt) {
  ScriptedBrowser browser(echo);
  const auto connection = Connection::open(browser.endpoint(), limits());
  std::atomic<int> right{0};
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 8; ++thread) {
      threads.emplace_back([&, thread] {
        for (int index = 0; index < 100; ++index) {
          const int n = thread * 1000 + index;
          right += connection->call("Echo", {{"n", n}}, {}, limits()).at("params").at("n") == n ? 1 : 0;
        }
      });
    }
  }
  EXPECT_EQ(right, 800);
}

} // namespace tabwright::devtools
