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

/// The client's user, as far as the protocol lets a server ask them ("elicitation/create").
class Elicitation final : public intents::ActionHost {
public:
  /// A client that can't ask answers nothing. `peer` outlives the elicitation.
  Elicitation(rpc::Peer& peer, bool canAsk) : peer_(peer), canAsk_(canAsk) {}

  /// The text given for a missing value, not empty; nothing when the user declined or there is nobody to ask.
  platform::Task<std::optional<std::string>> ask(intents::NeedsValue missing);

  platform::Task<void> requestConfirmation(intents::LocalizedText question) override;
  /// Kept for the call's result.
  void notice(const platform::Notice& notice) override { notices_.push_back(notice); }
  [[nodiscard]] const std::vector<platform::Notice>& notices() const { return notices_; }

private:
  platform::Task<std::optional<boost::json::value>> request(boost::json::object question);

  rpc::Peer& peer_;
  bool canAsk_;
  std::vector<platform::Notice> notices_;
};

} // namespace tabwright::host
