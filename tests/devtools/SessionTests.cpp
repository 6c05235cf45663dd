#include "devtools/Session.h"
#include "support/ScriptedBrowser.h"

#include <gtest/gtest.h>

#include <future>

namespace tabwright::devtools {

using support::ScriptedBrowser;
using Wire = ScriptedBrowser::Wire;
using Call = boost::json::object;
using namespace std::chrono_literals;

namespace {

platform::CallLimits limits() {
  return {std::chrono::steady_clock::now() + 60s, {}};
}

/// A browser with one page, whose answer to Runtime.evaluate a test decides by the expression.
class SessionTest : public testing::Test {
protected:
  void script(ScriptedBrowser::Script evaluate) {
    browser_ = std::make_unique<ScriptedBrowser>([this, evaluate](Wire& wire, const Call& call) {
      const std::string method(call.at("method").as_string());
      if (method == "Target.attachToTarget")
        wire.answer(call, {{"sessionId", "S"}});
      else if (method == "Target.getTargetInfo" && isClosed_)
        wire.refuse(call, -32602, "No target with given id found");
      else if (method == "Runtime.evaluate" && !call.at("params").as_object().contains("awaitPromise"))
        wire.answer(call, {{"result", {{"value", false}}}}); // to the session's own question
      else if (method == "Runtime.evaluate")
        evaluate(wire, call);
      else
        wire.answer(call, {});
    });
    connection_ = Connection::open(browser_->endpoint(), limits());
    session_ = Session::attach(connection_, "T", Session::Kind::page, limits());
  }

  Evaluation evaluate(const std::string& javascript = "x") { return session_->evaluate(javascript, limits()); }
  DevToolsFault fault() {
    try {
      evaluate();
    } catch (const DevToolsFailure& failure) {
      return failure.kind();
    }
    ADD_FAILURE() << "no DevToolsFailure was thrown";
    return DevToolsFault::refused;
  }

  std::atomic<bool> isClosed_ = false;
  std::unique_ptr<ScriptedBrowser> browser_;
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Session> session_;
};

} // namespace

TEST_F(SessionTest, WhatCantBeSaidInJsonIsNullAndNotAFailure) {
  script([](Wire& wire, const Call& call) { wire.refuse(call, -32000, "Object reference chain is too long"); });
  const Evaluation evaluation = evaluate();
  EXPECT_EQ(evaluation.value, nullptr);
  EXPECT_EQ(evaluation.exception, "Object reference chain is too long");
}

TEST_F(SessionTest, APageThatWentElsewhereIsToldFromOneThatWasClosed) {
  script([](Wire& wire, const Call& call) { wire.refuse(call, -32000, "Inspected target navigated or closed"); });
  EXPECT_EQ(evaluate().value, nullptr);
  isClosed_ = true;
  EXPECT_EQ(fault(), DevToolsFault::targetGone);
}

TEST_F(SessionTest, ASessionThatTheBrowserHasForgottenIsGone) {
  script([](Wire& wire, const Call& call) { wire.refuse(call, -32001, "Session with given id not found."); });
  EXPECT_EQ(fault(), DevToolsFault::targetGone);
}

TEST_F(SessionTest, EventsEndTheCallsUnderWay) {
  struct Case {
    const char* event;
    DevToolsFault fault;
    bool isAttachedAfter;
  };
  for (const Case& each : {Case{"Page.javascriptDialogOpening", DevToolsFault::dialogOpen, true},
                           Case{"Inspector.targetCrashed", DevToolsFault::targetCrashed, true},
                           Case{"Target.detachedFromTarget", DevToolsFault::targetGone, false}}) {
    script([&](Wire& wire, const Call&) {
      const bool isBrowsers = std::string_view(each.event).starts_with("Target.");
      wire.report(each.event, {{"message", "hi"}, {"sessionId", "S"}}, isBrowsers ? "" : "S");
    });
    EXPECT_EQ(fault(), each.fault) << each.event;
    EXPECT_EQ(fault(), each.fault) << "and the calls after: " << each.event;
    EXPECT_EQ(session_->isAttached(), each.isAttachedAfter) << each.event;
    session_.reset();
  }
}

TEST_F(SessionTest, AfterTheDialogIsClosedAndThePageReloadedCallsGoThrough) {
  script([count = 0](Wire& wire, const Call& call) mutable {
    if (++count == 1) {
      wire.report("Page.javascriptDialogOpening", {{"message", "one"}}, "S");
      wire.report("Page.javascriptDialogClosed", {}, "S");
    } else if (count == 2) {
      wire.report("Inspector.targetCrashed", {}, "S");
      wire.report("Inspector.targetReloadedAfterCrash", {}, "S");
    } else {
      wire.answer(call, {{"result", {{"type", "number"}, {"value", count}}}});
    }
  });
  EXPECT_EQ(fault(), DevToolsFault::dialogOpen);
  connection_->call("Any", {}, {}, limits()); // whose answer comes behind the events
  EXPECT_EQ(fault(), DevToolsFault::targetCrashed);
  connection_->call("Any", {}, {}, limits());
  EXPECT_EQ(evaluate().value, 3);
}

TEST_F(SessionTest, BindingsCallTheirListenerWithTheText) {
  script([](Wire& wire, const Call& call) {
    wire.report("Runtime.bindingCalled", {{"name", "other"}, {"payload", "no"}}, "S");
    wire.report("Runtime.bindingCalled", {{"name", "mine"}, {"payload", "yes"}}, "S");
    wire.answer(call, {{"result", {{"type", "undefined"}}}});
  });
  std::vector<std::string> heard;
  session_->bind("mine", [&](const std::string& payload) { heard.push_back(payload); });
  EXPECT_EQ(evaluate().value, nullptr);
  EXPECT_EQ(heard, std::vector<std::string>{"yes"});
}

} // namespace tabwright::devtools
