#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::testsupport {

/// A collector of error reports on 127.0.0.1 that keeps what it is sent and answers as a test says. Serves from its own
/// thread until it is destroyed. Safe to use from any thread.
class ReportCollector {
public:
  enum class Manner {
    answers,       ///< with the response
    fallsSilent,   ///< takes the request and never answers
    neverFinishes, ///< answers with the response, and then a body without end
  };

  ReportCollector();
  ~ReportCollector();
  ReportCollector(const ReportCollector&) = delete;
  ReportCollector& operator=(const ReportCollector&) = delete;

  /// From now on; at first everything is answered with 200. `head` is a status and headers as in
  /// "429 Too Many Requests\r\nRetry-After: 5\r\n".
  void behave(Manner manner, std::string head = "200 OK\r\n");

  /// The whole requests so far, head and body.
  [[nodiscard]] std::vector<std::string> requests() const;
  /// The address of a project here.
  [[nodiscard]] std::string dsn() const;

private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

} // namespace tabwright::testsupport
