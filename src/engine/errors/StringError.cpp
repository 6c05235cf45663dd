#include "engine/errors/StringError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

constexpr platform::FailureTable<StringError, 1> stringErrors{
    "StringError", {{StringError::unableToDecodeJSON, "unableToDecodeJSON", "enum.StringError.unableToDecodeJSON"}}};

} // namespace

std::string errorDescription(StringError error, const std::string&) {
  return platform::localized(stringErrors[error].sentence, "Skeleton-Errors");
}

platform::FailureIdentity identity(StringError error) {
  return stringErrors.identity(error);
}

} // namespace tabwright::engine
