#pragma once

#include "intents/ActionHost.h"
#include "intents/NeedsValue.h"
#include "rpc/Peer.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <optional>
#include <string>
#include <vector>

namespace tabwright::host {

/// The client's user, as far as the Model Context Protocol lets a server ask them ("elicitation/create"). One for each
/// call of a tool, on the peer's executor.
class Elicitation final : public intents::ActionHost {
public:
  /// A client that can't ask answers nothing. `peer` outlives the elicitation.
  Elicitation(rpc::Peer& peer, bool canAsk) : peer_(peer), canAsk_(canAsk) {}

  /// The text given for a missing value, not empty; nothing when the user declined, the client answered with an error,
  /// or there is nobody to ask. Throws an `RpcError` when the connection has ended.
  platform::Task<std::optional<std::string>> ask(intents::NeedsValue missing);

  /// Refuses likewise: all but an accepted form is a no.
  platform::Task<void> requestConfirmation(intents::LocalizedText question) override;
  /// Kept for the call's result, in the order in which they came.
  void notice(const platform::Notice& notice) override { notices_.push_back(notice); }
  [[nodiscard]] const std::vector<platform::Notice>& notices() const { return notices_; }

private:
  platform::Task<std::optional<boost::json::value>> request(boost::json::object question);

  rpc::Peer& peer_;
  bool canAsk_;
  std::vector<platform::Notice> notices_;
};

} // namespace tabwright::host
