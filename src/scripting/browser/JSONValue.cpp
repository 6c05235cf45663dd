#include "scripting/browser/JSONValue.h"

#include <boost/json/value.hpp>

#include <limits>
#include <string>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Value;

Value valueOf(const boost::json::value& json) {
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
    return Value(std::string(json.get_string().data(), json.get_string().size()));
  case boost::json::kind::array: {
    std::vector<Value> items;
    items.reserve(json.get_array().size());
    for (const auto& item : json.get_array())
      items.push_back(valueOf(item));
    return Value::list(std::move(items));
  }
  case boost::json::kind::object: {
    auto record = std::make_shared<applescript::Record>();
    for (const auto& member : json.get_object())
      record->set(Label{0, std::string(member.key().data(), member.key().size())}, valueOf(member.value()));
    return Value(std::move(record));
  }
  }
  return Value::missing();
}

} // namespace tabwright::scripting
