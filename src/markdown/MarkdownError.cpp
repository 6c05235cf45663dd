#include "markdown/MarkdownError.h"

#include "platform/FailureTable.h"

namespace tabwright::markdown {
namespace {

constexpr platform::FailureTable<MarkdownError, 1> table{
    "MarkdownError", {{MarkdownError::textTooLong, "textTooLong", "The Markdown text is too long: "}}};

} // namespace

std::string errorDescription(MarkdownError error, const std::string& detail) {
  return std::string(table[error].sentence) + detail;
}

platform::FailureIdentity identity(MarkdownError error) {
  return table.identity(error);
}

} // namespace tabwright::markdown
