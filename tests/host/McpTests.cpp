#include "host/mcp/ToolDescriptions.h"
#include "host/mcp/ToolServer.h"
#include "support/ActionBench.h"
#include "support/MemoryStream.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace tabwright::host {
namespace {

namespace asio = boost::asio;
namespace json = boost::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

platform::Task<void> receiveInto(testsupport::MemoryStream& stream, std::optional<json::object>& message) {
  message = (co_await stream.receive()).value().value().as_object();
}

/// A client that speaks raw messages to the server.
class McpTest : public ::testing::Test {
protected:
  McpTest() { asio::co_spawn(context, peer.run(), asio::detached); }
  ~McpTest() override {
    client->close();
    context.run();
  }

  json::object answerTo(json::object message) {
    message["jsonrpc"] = "2.0";
    client->send(message);
    std::optional<json::object> answer;
    asio::co_spawn(context, receiveInto(*client, answer), asio::detached);
    while (!answer && context.run_one() > 0) {
    }
    return answer.value();
  }

  json::object initialized(json::object capabilities) {
    return answerTo({{"id", 0},
                     {"method", "initialize"},
                     {"params", {{"protocolVersion", "2025-06-18"}, {"capabilities", std::move(capabilities)}}}});
  }

  static json::object call(const char* tool, json::object arguments) {
    return {{"id", 1}, {"method", "tools/call"}, {"params", {{"name", tool}, {"arguments", std::move(arguments)}}}};
  }

  testsupport::ActionBench bench;
  Catalogue catalogue{bench.services};
  asio::io_context context{1};
  testsupport::MemoryStream ours{context.get_executor()};
  std::unique_ptr<testsupport::MemoryStream> client = ours.otherEnd();
  rpc::Peer peer{ours};
  ToolServer server{peer, catalogue, "1.2.3"};
};

TEST_F(McpTest, BeginsWithAHandshake) {
  EXPECT_EQ(answerTo({{"id", 1}, {"method", "tools/list"}}).at("error").at("code"), -32600);
  EXPECT_EQ(answerTo(call("GetListOfTabs", {})).at("error").at("code"), -32600);
  EXPECT_EQ(answerTo({{"id", 1}, {"method", "ping"}}).at("result"), json::object());
  EXPECT_EQ(answerTo({{"id", 1}, {"method", "initialize"}}).at("error").at("code"), -32602);
  const json::object future =
      answerTo({{"id", 1}, {"method", "initialize"}, {"params", {{"protocolVersion", "2999-01-01"}}}});
  EXPECT_EQ(future.at("result").at("protocolVersion"), "2025-11-25");
  EXPECT_EQ(initialized({}).at("result").at("protocolVersion"), "2025-06-18");
}

TEST_F(McpTest, OffersEveryActionAsAToolWithObjectsForSchemas) {
  initialized({});
  const json::object answer = answerTo({{"id", 1}, {"method", "tools/list"}});
  const json::array& tools = answer.at("result").at("tools").as_array();
  ASSERT_EQ(tools.size(), catalogue.names().size());
  for (const json::value& tool : tools) {
    EXPECT_EQ(tool.at("inputSchema").at("type"), "object") << tool.at("name");
    if (const json::value* output = tool.as_object().if_contains("outputSchema")) {
      EXPECT_EQ(output->at("type"), "object") << tool.at("name");
    }
    const json::value& hints = tool.at("annotations");
    EXPECT_FALSE(hints.at("readOnlyHint").as_bool() && hints.at("destructiveHint").as_bool()) << tool.at("name");
  }
  EXPECT_THROW(static_cast<void>(hintsOf("NoSuchAction")), std::logic_error);
}

TEST_F(McpTest, GivesResultsAsStructuredContentAndAsText) {
  initialized({});
  const json::object list = answerTo(call("GetListOfTabs", {}));
  EXPECT_EQ(list.at("result").at("structuredContent"), (json::object{{"result", json::array()}}));
  EXPECT_EQ(list.at("result").at("content").at(0).at("text"), "[]");
  const json::object browser = answerTo(call("GetBrowserReference", {{"targetContext", "chromium"}}));
  EXPECT_EQ(browser.at("result").at("structuredContent").at("id"), "org.chromium.chromium");
  EXPECT_FALSE(browser.at("result").as_object().contains("isError"));
}

TEST_F(McpTest, TellsOfFailuresAndMistakesInWaysThatAnAgentCanMend) {
  initialized({});
  EXPECT_EQ(answerTo(call("NoSuchTool", {})).at("error").at("code"), -32602);
  const json::object misspelt = answerTo(call("ClickElement", {{"cssSelectr", "a"}}));
  EXPECT_TRUE(misspelt.at("result").at("isError").as_bool());
  EXPECT_THAT(json::serialize(misspelt.at("result").at("content")), HasSubstr("cssSelector"));
  const json::object missing = answerTo(call("ClickElement", {}));
  EXPECT_TRUE(missing.at("result").at("isError").as_bool());
  EXPECT_EQ(missing.at("result").at("_meta").at("com.tabwright/failure").at("case"), "cssSelector");
  EXPECT_THAT(bench.scripts, IsEmpty());
  bench.failureNumber = 2;
  const json::object failed = answerTo(call("ClickElement", {{"cssSelector", "a"}}));
  EXPECT_TRUE(failed.at("result").at("isError").as_bool());
  EXPECT_EQ(failed.at("result").at("_meta").at("com.tabwright/failure").at("number"), 2);
}

TEST_F(McpTest, AsksTheUserOfAClientThatCan) {
  initialized({{"elicitation", json::object()}});
  const json::object question = answerTo(call("ClickElement", {}));
  EXPECT_EQ(question.at("method"), "elicitation/create");
  EXPECT_TRUE(question.at("params").at("requestedSchema").at("properties").as_object().contains("cssSelector"));
  const json::object declined = answerTo({{"id", question.at("id")}, {"result", {{"action", "decline"}}}});
  EXPECT_TRUE(declined.at("result").at("isError").as_bool());
  EXPECT_THAT(bench.scripts, IsEmpty());

  const json::object again = answerTo(call("ClickElement", {}));
  bench.payload = "[true]";
  static_cast<void>(
      answerTo({{"id", again.at("id")}, {"result", {{"action", "accept"}, {"content", {{"cssSelector", "#given"}}}}}}));
  ASSERT_EQ(bench.scripts.size(), 1U);
  EXPECT_THAT(bench.scripts.front(), HasSubstr("#given"));
}

} // namespace
} // namespace tabwright::host
