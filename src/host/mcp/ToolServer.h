#pragma once

#include "host/Catalogue.h"
#include "rpc/Peer.h"

#include <boost/json/object.hpp>

#include <string>

namespace tabwright::host {

/// The catalogue as a server of the Model Context Protocol (revision 2025-11-25, and the two before it): each action is
/// a tool. An agent calls tools by name and gets their results as structured content and as text.
///
///     rpc::Peer peer(stream);
///     ToolServer server(peer, catalogue, "1.0");
///     co_await peer.run();
///
/// An action that fails is a tool's result marked as an error, in the words that a user would read, with its kind as
/// data below "_meta"; so are wrong and missing parameters, since an agent can mend them. A missing value and a
/// confirmation are asked for (elicitation) where the client can ask its user; elsewhere the result tells which
/// parameter is missing, and what needs a confirmation is refused. Cancelling a call stops its script.
class ToolServer {
public:
  /// Sets the handlers of `peer`, before it runs. Both references, and the server, outlive the peer's run.
  ToolServer(rpc::Peer& peer, const Catalogue& catalogue, std::string version);
  ToolServer(const ToolServer&) = delete;
  ToolServer& operator=(const ToolServer&) = delete;

private:
  platform::Task<boost::json::value> initialize(boost::json::object params);
  platform::Task<boost::json::value> listTools(boost::json::object params);
  platform::Task<boost::json::value> callTool(boost::json::object params);
  void requireInitialized() const;

  rpc::Peer& peer_;
  const Catalogue& catalogue_;
  std::string version_;
  bool isInitialized_ = false;
  bool canElicit_ = false;
};

} // namespace tabwright::host
