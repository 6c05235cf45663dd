// Handlers of a peer, one per request of the protocol. Anything that an agent can mend, wrong parameters too, is a
// result of the tool, in the user's words; errors of the protocol are left to what its client does wrong: an unknown
// tool, a missing handshake.
#include "host/mcp/ToolServer.h"

#include "host/Perform.h"
#include "host/mcp/CallProgress.h"
#include "host/mcp/Elicitation.h"
#include "host/mcp/LogMessages.h"
#include "host/mcp/ToolDescriptions.h"
#include "host/mcp/ToolResults.h"
#include "intents/NeedsValue.h"
#include "platform/AsciiCase.h"

#include <boost/json/array.hpp>

#include <algorithm>
#include <array>
#include <utility>

/// A call goes round as often as its action lacks a value that the user can be asked for: nothing has run before that.
namespace tabwright::host {

namespace json = boost::json;
using rpc::ErrorCode;
using rpc::RpcError;

namespace {

// Newest first. A client that speaks another revision is answered with ours, and decides itself.
// The one before these wants messages in batches.
constexpr std::array<std::string_view, 2> revisions = {"2025-11-25", "2025-06-18"};

constexpr const char* instructions =
    "Tools that act on a real browser with all its windows and tabs. Give a browser by its name in targetContext, such "
    "as \"chromium\"; without it the frontmost one counts. Results feed further calls: give the fullID of a tab or "
    "window from a result as targetTab or targetWindow, which makes the choice of a specific one by itself. Elements "
    "are named by CSS selectors. When no browser can be reached, one is started by the command \"tabwright browser "
    "chromium\".";

const json::value* memberOf(const json::object& object, std::string_view name, json::kind kind) {
  const json::value* member = object.if_contains(name);
  return member && member->kind() == kind ? member : nullptr;
}

} // namespace

ToolServer::ToolServer(rpc::Peer& peer, const Catalogue& catalogue, platform::Clock& clock, std::string version)
    : peer_(peer), catalogue_(catalogue), clock_(clock), version_(std::move(version)) {
  peer_.onRequest("initialize", [this](json::object params) { return initialize(std::move(params)); });
  peer_.onRequest("ping", [](json::object) -> platform::Task<json::value> { co_return json::object(); });
  peer_.onRequest("tools/list", [this](json::object params) { return listTools(std::move(params)); });
  peer_.onRequest("tools/call", [this](json::object params) { return callTool(std::move(params)); });
  peer_.onRequest("logging/setLevel", [this](json::object params) { return setLogLevel(std::move(params)); });
  peer_.onNotification("notifications/initialized", [](json::object) -> platform::Task<void> { co_return; });
}

void ToolServer::requireInitialized() const {
  if (!isInitialized_)
    throw RpcError(ErrorCode::invalidRequest, "The conversation begins with the request “initialize”.");
}

platform::Task<json::value> ToolServer::initialize(json::object params) {
  const json::value* wanted = memberOf(params, "protocolVersion", json::kind::string);
  if (!wanted)
    throw RpcError(ErrorCode::invalidParams, "initialize needs “protocolVersion”, a text.");
  const std::string_view revision = wanted->get_string();
  const bool isKnown = std::ranges::find(revisions, revision) != revisions.end();
  const json::value* capabilities = memberOf(params, "capabilities", json::kind::object);
  const json::value* elicitation =
      capabilities ? memberOf(capabilities->get_object(), "elicitation", json::kind::object) : nullptr;
  // Empty stands for forms, as it did before there was another way to ask.
  canElicit_ = elicitation && (elicitation->get_object().empty() || elicitation->get_object().contains("form"));
  isInitialized_ = true;
  co_return json::object{{"protocolVersion", isKnown ? revision : revisions.front()},
                         {"capabilities", {{"tools", json::object()}, {"logging", json::object()}}},
                         {"serverInfo", {{"name", "tabwright"}, {"title", "Tabwright"}, {"version", version_}}},
                         {"instructions", instructions}};
}

platform::Task<json::value> ToolServer::listTools(json::object) {
  requireInitialized();
  co_return json::object{{"tools", toolDescriptions(catalogue_)}};
}

platform::Task<json::value> ToolServer::setLogLevel(json::object params) {
  requireInitialized();
  const json::value* level = memberOf(params, "level", json::kind::string);
  const platform::LogLevel lowest = logLevelFor(level ? std::string_view(level->get_string()) : std::string_view());
  log_.reset(); // before the next one, so that no line is told twice
  log_.emplace(lowest, logMessagesTo(peer_.notifier()));
  co_return json::object();
}

platform::Task<ActionResult> ToolServer::run(std::string tool, json::object arguments, intents::ActionHost& user,
                                             json::value progressToken) {
  // Progress goes only to who asked for it, as the protocol has it.
  platform::Task<ActionResult> running = perform(catalogue_, tool, std::move(arguments), user);
  if (progressToken.is_null())
    return running;
  return withProgress(std::move(running), peer_, clock_, std::move(progressToken), std::move(tool));
}

platform::Task<json::value> ToolServer::callTool(json::object params) {
  requireInitialized();
  const json::value* name = memberOf(params, "name", json::kind::string);
  // By its exact name, as it was listed; the catalogue would take it in any case.
  const std::vector<std::string> names = catalogue_.names();
  if (!name || std::ranges::find(names, std::string_view(name->get_string())) == names.end())
    throw RpcError(ErrorCode::invalidParams, "There is no such tool. “tools/list” has them all.");
  const json::value* given = params.if_contains("arguments");
  if (given && !given->is_object())
    throw RpcError(ErrorCode::invalidParams, "“arguments” must be an object.");
  const std::string tool(name->get_string());
  json::object arguments = given ? given->get_object() : json::object();

  const json::value* meta = memberOf(params, "_meta", json::kind::object);
  const json::value* progressToken = meta ? meta->get_object().if_contains("progressToken") : nullptr;
  const json::value token = progressToken ? *progressToken : json::value(nullptr);

  Elicitation user(peer_, canElicit_);
  for (;;) {
    std::optional<intents::NeedsValue> missing;
    try {
      ActionResult result = co_await run(tool, arguments, user, token);
      co_return succeededResult(std::move(result), user.notices());
    } catch (const intents::NeedsValue& thrown) {
      missing = thrown;
    } catch (const RpcError&) {
      throw; // the client could not be asked
    } catch (const platform::Failure& failure) {
      co_return failedResult(failure);
    }
    std::optional<std::string> answer = co_await user.ask(*missing);
    if (!answer)
      co_return failedResult(*missing);
    // In place of what was refused, if it was given.
    for (auto each = arguments.begin(); each != arguments.end();)
      each = platform::equalIgnoringCase(each->key(), missing->parameter()) ? arguments.erase(each) : each + 1;
    arguments[missing->parameter()] = *answer;
  }
}

} // namespace tabwright::host
