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

platform::Task<std::optional<std::string>> Elicitation::ask(intents::NeedsValue missing) {
  if (!canAsk_)
    co_return std::nullopt;
  json::object question{{"message", missing.question()},
                        {"requestedSchema",
                         {{"type", "object"},
                          {"properties", {{missing.parameter(), {{"type", "string"}, {"title", missing.parameter()}}}}},
                          {"required", json::array{missing.parameter()}}}}};
  const json::value answer = co_await peer_.request(method, std::move(question));
  const json::object* content = acceptedContent(answer);
  const json::value* value = content ? content->if_contains(missing.parameter()) : nullptr;
  if (!value || !value->is_string())
    co_return std::nullopt;
  co_return std::string(value->get_string());
}

platform::Task<void> Elicitation::requestConfirmation(intents::LocalizedText question) {
  if (!canAsk_)
    throw intents::ConfirmationRefused();
  json::object asked{{"message", question.text()},
                     {"requestedSchema", {{"type", "object"}, {"properties", json::object()}}}};
  const json::value answer = co_await peer_.request(method, std::move(asked));
  if (!acceptedContent(answer))
    throw intents::ConfirmationRefused();
}

} // namespace tabwright::host
