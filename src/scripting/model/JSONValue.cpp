#include "scripting/model/JSONValue.h"

#include <boost/json/value.hpp>

#include <limits>
#include <string>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Value;

const JSONContainers languageContainers{
    .list = [](std::vector<Value> items) { return Value::list(std::move(items)); },
    .record =
        [](std::vector<std::pair<Label, Value>> members) {
          auto record = std::make_shared<applescript::Record>();
          for (auto& [label, value] : members)
            // Set, not added: of labels that differ in case only the last one stays.
            record->set(label, std::move(value));
          return Value(std::move(record));
        },
};

Value valueOf(const boost::json::value& json, const JSONContainers& containers) {
  switch (json.kind()) {
  case boost::json::kind::null:
    return Value::missing();
  case boost::json::kind::bool_:
    return Value(json.get_bool());
  case boost::json::kind::int64:
    return Value(json.get_int64());
  case boost::json::kind::uint64:
    return json.get_uint64() <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
               ? Value(static_cast<std::int64_t>(json.get_uint64()))
               : Value(static_cast<double>(json.get_uint64()));
  case boost::json::kind::double_:
    return Value(json.get_double());
  case boost::json::kind::string:
    return Value(std::string(json.get_string()));
  case boost::json::kind::array: {
    std::vector<Value> items;
    items.reserve(json.get_array().size());
    for (const auto& item : json.get_array())
      items.push_back(valueOf(item, containers));
    return containers.list(std::move(items));
  }
  case boost::json::kind::object: {
    std::vector<std::pair<Label, Value>> members;
    members.reserve(json.get_object().size());
    for (const auto& member : json.get_object())
      members.emplace_back(Label{0, std::string(member.key())}, valueOf(member.value(), containers));
    return containers.record(std::move(members));
  }
  }
  return Value::missing();
}

} // namespace tabwright::scripting
