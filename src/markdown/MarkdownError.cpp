#include "markdown/MarkdownError.h"

namespace tabwright::markdown {

std::string errorDescription(MarkdownError error, const std::string& detail) {
  switch (error) {
  case MarkdownError::textTooLong:
    return "The Markdown text is too long: " + detail;
  }
  return detail;
}

platform::FailureIdentity identity(MarkdownError error) {
  switch (error) {
  case MarkdownError::textTooLong:
    return {"MarkdownError", "textTooLong", std::nullopt};
  }
  return {"MarkdownError", "", std::nullopt};
}

} // namespace tabwright::markdown
