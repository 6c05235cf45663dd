#pragma once

#include "html/AllowList.h"
#include "platform/Failure.h"

namespace tabwright::browserdata {

/// The elements, attributes and protocols that the conversion to Markdown reads; everything else is taken out of a page
/// before.
class CustomSoupWhitelist {
public:
  enum class CustomSoupWhitelistError { unableToInherit };

  /// The list, made on first use. From any thread.
  [[nodiscard]] static const html::AllowList& list();
};

/// The sentence and the name of the one case; nothing is put into the sentence.
std::string errorDescription(CustomSoupWhitelist::CustomSoupWhitelistError error, const std::string& detail);
platform::FailureIdentity identity(CustomSoupWhitelist::CustomSoupWhitelistError error);

} // namespace tabwright::browserdata
