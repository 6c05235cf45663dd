#include "host/Perform.h"

#include "intents/EntityDeclaration.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>

namespace tabwright::host {

namespace {

std::unique_ptr<actions::ActionFrame> prepared(const Catalogue& catalogue, std::string_view name,
                                               const ParameterValues& parameters) {
  // Wrong use is told before missing values: nobody is asked for one where the rest can't be.
  auto action = catalogue.make(name);
  readParameters(*action, parameters);
  if (const intents::ParameterBase* missing = action->missingParameter())
    throw missing->needsValueError();
  return action;
}

std::string lineOf(const intents::ValueType& type, const boost::json::value& value) {
  if (type.kind == intents::ValueKind::entity)
    return type.entity->displayRepresentation(value);
  // Its bytes are no line for a person.
  if (type.kind == intents::ValueKind::file)
    return std::string(value.at("filename").as_string());
  if (const boost::json::string* text = value.if_string())
    return std::string(*text);
  return boost::json::serialize(value);
}

} // namespace

platform::Task<ActionResult> perform(const Catalogue& catalogue, std::string name, ParameterValues parameters,
                                     intents::ActionHost& host) {
  const auto action = prepared(catalogue, name, parameters);
  boost::json::value value = co_await action->perform(host);
  co_return ActionResult{std::move(value), action->resultType(), action->hints().isWrittenByPages};
}

std::string scriptText(const Catalogue& catalogue, std::string_view name, const ParameterValues& parameters) {
  return prepared(catalogue, name, parameters)->scriptText();
}

std::vector<std::string> linesOf(const ActionResult& result) {
  std::vector<std::string> lines;
  if (result.value.is_null())
    return lines;
  if (!result.type.isList)
    return {lineOf(result.type, result.value)};
  for (const boost::json::value& item : result.value.as_array())
    lines.push_back(lineOf(result.type, item));
  return lines;
}

} // namespace tabwright::host
