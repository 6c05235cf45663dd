// The protocol lets a server ask for flat forms alone, whose fields are texts, numbers or choices. So a missing value
// is one text, read later as a command line's would be, and a confirmation is a form without fields: accepting it is
// the consent.
#include "host/mcp/Elicitation.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

namespace tabwright::host {

namespace json = boost::json;

namespace {

constexpr const char* method = "elicitation/create";

// Null unless the user accepted.
const json::object* acceptedContent(const json::value& answer) {
  const json::object* object = answer.if_object();
  const json::value* action = object ? object->if_contains("action") : nullptr;
  if (!action || !action->is_string() || action->get_string() != "accept")
    return nullptr;
  static const json::object none;
  const json::value* content = object->if_contains("content");
  return content && content->is_object() ? &content->get_object() : &none;
}

} // namespace

// A client that answers with an error can't ask after all.
platform::Task<std::optional<json::value>> Elicitation::request(json::object question) {
  try {
    co_return co_await peer_.request(method, std::move(question));
  } catch (const rpc::RpcError& error) {
    if (error.code() == static_cast<int>(rpc::ErrorCode::connectionEnded))
      throw;
    co_return std::nullopt;
  }
}

platform::Task<std::optional<std::string>> Elicitation::ask(intents::NeedsValue missing) {
  if (!canAsk_)
    co_return std::nullopt;
  const json::object value{{"type", "string"}, {"title", missing.parameter()}, {"minLength", 1}};
  const std::string message =
      missing.cause() ? missing.cause()->sentence + "\n" + missing.question() : missing.question();
  json::object question{{"message", message},
                        {"requestedSchema",
                         {{"type", "object"},
                          {"properties", {{missing.parameter(), value}}},
                          {"required", json::array{missing.parameter()}}}}};
  const std::optional<json::value> answer = co_await request(std::move(question));
  const json::object* content = answer ? acceptedContent(*answer) : nullptr;
  const json::value* given = content ? content->if_contains(missing.parameter()) : nullptr;
  // An empty text is no value either: the question would come again and again.
  if (!given || !given->is_string() || given->get_string().empty())
    co_return std::nullopt;
  co_return std::string(given->get_string());
}

platform::Task<void> Elicitation::requestConfirmation(intents::LocalizedText question) {
  if (!canAsk_)
    throw intents::ConfirmationRefused();
  json::object asked{{"message", question.text()},
                     {"requestedSchema", {{"type", "object"}, {"properties", json::object()}}}};
  const std::optional<json::value> answer = co_await request(std::move(asked));
  if (!answer || !acceptedContent(*answer))
    throw intents::ConfirmationRefused();
}

} // namespace tabwright::host
