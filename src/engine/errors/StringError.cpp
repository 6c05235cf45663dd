#include "engine/errors/StringError.h"

#include "platform/StringCatalogue.h"

namespace tabwright::engine {

std::string errorDescription(StringError, const std::string&) {
  return platform::localized("enum.StringError.unableToDecodeJSON", "Skeleton-Errors");
}

platform::FailureIdentity identity(StringError) {
  return {"StringError", "unableToDecodeJSON", std::nullopt};
}

} // namespace tabwright::engine
