#include "app/ResultFiles.h"

#include "intents/EntityDeclaration.h"
#include "intents/IntentFile.h"
#include "intents/ValueTraits.h"
#include "platform/FileFailure.h"
#include "platform/linux/PosixFileManager.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <string>
#include <system_error>

/// The walk goes by the declared types of the result: what looks like a file in a text of the page is none.
namespace tabwright::app {
namespace {

using intents::IntentFile;
using intents::ValueKind;
using intents::ValueType;

class FileWriter {
public:
  explicit FileWriter(const std::filesystem::path& folder) : folder_(folder) {}

  void write(boost::json::value& value, ValueType type) const {
    if (value.is_null())
      return;
    if (type.isList) {
      type.isList = false;
      for (boost::json::value& item : value.as_array())
        write(item, type);
    } else if (type.kind == ValueKind::entity) {
      for (const intents::PropertyDeclaration& property : type.entity->properties)
        if (boost::json::value* const held = value.as_object().if_contains(property.name))
          write(*held, property.type);
    } else if (type.kind == ValueKind::file) {
      const IntentFile file = intents::ValueTraits<IntentFile>::fromJson(value);
      value = {{"filename", file.filename}, {"type", file.type}, {"path", written(file).string()}};
    }
  }

private:
  std::filesystem::path written(const IntentFile& file) const {
    const std::filesystem::path name = std::filesystem::path(file.filename).filename();
    std::filesystem::path path = folder_ / name;
    for (int number = 2; !files_.writeNewFileAtomically(path, file.data); ++number)
      path = folder_ / fmt::format("{} {}{}", name.stem().string(), number, name.extension().string());
    return path;
  }

  std::filesystem::path folder_;
  mutable platform::PosixFileManager files_;
};

} // namespace

host::ActionResult withFilesIn(const std::filesystem::path& folder, host::ActionResult result) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(folder);
  std::filesystem::create_directories(absolute, error);
  if (error)
    throw platform::FileFailure("make the folder", absolute, error.value());
  FileWriter(absolute.lexically_normal()).write(result.value, result.type);
  return result;
}

} // namespace tabwright::app
