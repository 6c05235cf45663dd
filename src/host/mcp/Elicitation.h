#pragma once

#include "intents/ActionHost.h"
#include "intents/NeedsValue.h"
#include "rpc/Peer.h"

#include <optional>
#include <string>

namespace tabwright::host {

/// The client's user, as far as the protocol lets a server ask them ("elicitation/create").
class Elicitation final : public intents::ActionHost {
public:
  /// A client that can't ask answers nothing. `peer` outlives the elicitation.
  Elicitation(rpc::Peer& peer, bool canAsk) : peer_(peer), canAsk_(canAsk) {}

  /// The text given for a missing value; nothing when the user declined or there is nobody to ask.
  platform::Task<std::optional<std::string>> ask(intents::NeedsValue missing);

  platform::Task<void> requestConfirmation(intents::LocalizedText question) override;

private:
  rpc::Peer& peer_;
  bool canAsk_;
};

} // namespace tabwright::host
