#include "host/FilesInResult.h"

#include "intents/EntityDeclaration.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

namespace tabwright::host {

void forEachFile(boost::json::value& value, intents::ValueType type,
                 const std::function<void(boost::json::value& file)>& found) {
  if (value.is_null())
    return;
  if (type.isList) {
    type.isList = false;
    for (boost::json::value& item : value.as_array())
      forEachFile(item, type, found);
  } else if (type.kind == intents::ValueKind::entity) {
    for (const intents::PropertyDeclaration& property : type.entity->properties) {
      if (boost::json::value* const held = value.as_object().if_contains(property.name))
        forEachFile(*held, property.type, found);
    }
  } else if (type.kind == intents::ValueKind::file) {
    found(value);
  }
}

} // namespace tabwright::host
