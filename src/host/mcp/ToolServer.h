#pragma once

#include "host/Catalogue.h"
#include "host/Perform.h"
#include "intents/ActionHost.h"
#include "platform/Clock.h"
#include "platform/LogReceiver.h"
#include "rpc/Peer.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <optional>
#include <string>

namespace tabwright::host {

/// The catalogue as a server of the Model Context Protocol (revisions 2025-11-25 and 2025-06-18): each action is
/// a tool. An agent calls tools by name and gets their results as text, JSON for all but texts.
///
///     rpc::Peer peer(stream);
///     ToolServer server(peer, catalogue, clock, "1.0");
///     co_await peer.run();
///
/// An action that fails is a tool's result marked as an error, in the words that a user would read, with its kind as
/// data below "_meta"; so are wrong and missing parameters, since an agent can mend them. A missing value and a
/// confirmation are asked for (elicitation) where the client can ask its user; elsewhere the result tells which
/// parameter is missing, and what needs a confirmation is refused. Cancelling a call stops its script. A call that
/// brings a progress token is told each second that it goes on. The program's log is sent from the level on that the
/// client sets, and before that not at all.
class ToolServer {
public:
  /// Sets the handlers of `peer`, before it runs. The references, and the server, outlive the peer's run. `version` is
  /// told to the client. One server is for one conversation.
  ToolServer(rpc::Peer& peer, const Catalogue& catalogue, platform::Clock& clock, std::string version);
  ToolServer(const ToolServer&) = delete;
  ToolServer& operator=(const ToolServer&) = delete;

private:
  platform::Task<boost::json::value> initialize(boost::json::object params);
  platform::Task<boost::json::value> listTools(boost::json::object params);
  platform::Task<boost::json::value> callTool(boost::json::object params);
  platform::Task<boost::json::value> setLogLevel(boost::json::object params);
  platform::Task<ActionResult> run(std::string tool, boost::json::object arguments, intents::ActionHost& user,
                                   boost::json::value progressToken);
  void requireInitialized() const;

  rpc::Peer& peer_;
  const Catalogue& catalogue_;
  platform::Clock& clock_;
  std::string version_;
  /// Set by "initialize": before it every request but "ping" is refused.
  bool isInitialized_ = false;
  bool canElicit_ = false;
  std::optional<platform::LogListener> log_; ///< once the client has set a level
};

} // namespace tabwright::host
