#pragma once

#include "devtools/Discovery.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tabwright::support {

/// The other end of a debugging connection, played by a test: a websocket server on 127.0.0.1 that does with each
/// message what the test says, right or wrong. Serves one connection, on its own thread.
///
///     ScriptedBrowser browser([](ScriptedBrowser::Wire& wire, const boost::json::object& call) {
///       wire.answer(call, {{"x", 1}});
///     });
///     auto connection = devtools::Connection::open(browser.endpoint(), limits);
class ScriptedBrowser {
public:
  /// The connection in the hands of the script. Valid as long as the browser; to be used on its thread only.
  class Wire {
  public:
    virtual ~Wire() = default;
    /// Answers a call.
    void answer(const boost::json::object& call, boost::json::object result);
    void refuse(const boost::json::object& call, int code, const std::string& message);
    /// Reports an event, in a session unless that is empty.
    void report(const std::string& method, boost::json::object parameters, const std::string& session = {});
    /// Sends a text message as it stands.
    virtual void sendText(const std::string& text) = 0;
    /// Sends bytes without the websocket's framing.
    virtual void sendBytes(const std::string& bytes) = 0;
    /// Breaks the connection without a word.
    virtual void cut() = 0;
  };
  using Script = std::function<void(Wire&, const boost::json::object& call)>;

  explicit ScriptedBrowser(Script script);
  ~ScriptedBrowser();
  ScriptedBrowser(const ScriptedBrowser&) = delete;
  ScriptedBrowser& operator=(const ScriptedBrowser&) = delete;

  [[nodiscard]] devtools::Endpoint endpoint() const;

private:
  class Server;
  std::unique_ptr<Server> server_;
};

} // namespace tabwright::support
