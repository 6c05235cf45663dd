#pragma once

#include "platform/Failure.h"

#include <boost/json/value.hpp>

#include <string>
#include <utility>

namespace tabwright::rpc {

/// The numbers of errors: those of JSON-RPC 2.0 (https://www.jsonrpc.org/specification#error_object), and from the
/// range that it leaves to implementations our own.
enum class ErrorCode : int {
  parseError = -32700,     ///< the bytes are no JSON
  invalidRequest = -32600, ///< the JSON is no message
  methodNotFound = -32601,
  invalidParams = -32602,
  internalError = -32603,
  tooManyRequests = -32000, ///< more requests at once than a peer takes
  connectionEnded = -32001, ///< never sent: the other side went away before it answered
};

/// An error that answers a request, in either direction: a handler throws it to answer with it, and whoever waits for
/// an answer is thrown the error that came.
class RpcError final : public platform::Failure {
public:
  /// For errors of this side. `message` is a sentence for users, `data` anything that helps a program.
  RpcError(ErrorCode code, std::string message, boost::json::value data = nullptr)
      : RpcError(static_cast<int>(code), std::move(message), std::move(data)) {}
  /// For codes of the other side, which may be any number.
  RpcError(int code, std::string message, boost::json::value data = nullptr)
      : code_(code), message_(std::move(message)), data_(std::move(data)) {}

  /// One of `ErrorCode`, or any number that the other side chose.
  [[nodiscard]] int code() const noexcept { return code_; }
  /// One sentence; may be empty when the other side wrote none.
  [[nodiscard]] const std::string& message() const noexcept { return message_; }
  /// Whatever explains the error to a program; null for nothing.
  [[nodiscard]] const boost::json::value& data() const noexcept { return data_; }

  [[nodiscard]] std::string errorDescription() const override {
    return message_.empty() ? "The request failed with error " + std::to_string(code_) : message_;
  }
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"RpcError", "answered", code_}; }

private:
  int code_;
  std::string message_;
  boost::json::value data_;
};

} // namespace tabwright::rpc
