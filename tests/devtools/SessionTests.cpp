#include "devtools/Limits.h"
#include "devtools/Session.h"
#include "support/ScriptedBrowser.h"
#include "support/SteppedDeadlines.h"

#include <gtest/gtest.h>

#include <thread>

namespace tabwright::devtools {

using support::ScriptedBrowser;
using Wire = ScriptedBrowser::Wire;
using Call = boost::json::object;
using namespace std::chrono_literals;

namespace {

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
        wire.answer(call, {{"result", {{"value", 0}}}}); // to the session's own question
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

TEST_F(SessionTest, ADocumentThatComesInDropsIsWaitedForOnce) {
  script([](Wire& wire, const Call& call) {
    wire.report("Page.frameNavigated", {{"frame", {{"id", "T"}}}}, "S");
    wire.answer(call, {{"result", {{"type", "undefined"}}}});
  });
  evaluate();
  EXPECT_TRUE(session_->isLeaving());
  const auto time = std::make_shared<testsupport::SteppedDeadlines>();
  std::jthread waiting([&] { session_->settle(Session::Answer::ever, testsupport::SteppedDeadlines::limits(time)); });
  EXPECT_TRUE(time->pass(1s));
  waiting.join();
  EXPECT_FALSE(session_->isLeaving());
}

} // namespace tabwright::devtools
