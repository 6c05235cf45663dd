#include "engine/errors/StringError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

constexpr platform::FailureTable<StringError, 1> table{
    "StringError", {{StringError::unableToDecodeJSON, "unableToDecodeJSON", "enum.StringError.unableToDecodeJSON"}}};

} // namespace

std::string errorDescription(StringError error, const std::string&) {
  return platform::localized(table[error].sentence, "Skeleton-Errors");
}

platform::FailureIdentity identity(StringError error) {
  return table.identity(error);
}

} // namespace tabwright::engine
