#pragma once

#include <memory>
#include <string>

namespace tabwright::support {

/// A web server on 127.0.0.1 for pages that a test makes up. Serves from its own thread until it is destroyed.
///
///     PageServer server;
///     server.serve("/form", "<title>Form</title><input id=name>");
///     driver.perform(Navigate{tab, server.url("/form")}, limits);
///
/// Paths that were not set up answer 404. Safe to use from any thread.
class PageServer {
public:
  PageServer();
  ~PageServer();
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;

  /// Answers requests for the path (which begins with "/"; a query is ignored) with this text from now on.
  void serve(const std::string& path, std::string body, std::string contentType = "text/html; charset=utf-8");
  /// The same with a whole response, status line and headers among it.
  void serveRaw(const std::string& path, std::string response);
  /// The same with a response that never ends: the text again and again, until the other side has had enough.
  void serveEndlessly(const std::string& path, std::string head, std::string text);
  /// Takes requests for the path and never answers them, so that the page stays loading.
  void neverAnswer(const std::string& path);
  /// The whole address of a path, such as "http://127.0.0.1:43210/form".
  [[nodiscard]] std::string url(const std::string& path) const;

private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

} // namespace tabwright::support
