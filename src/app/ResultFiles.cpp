#include "app/ResultFiles.h"

#include "host/FilesInResult.h"
#include "intents/IntentFile.h"
#include "intents/ValueTraits.h"
#include "platform/FileFailure.h"
#include "platform/linux/PosixFileManager.h"

#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <optional>
#include <string>
#include <system_error>

namespace tabwright::app {
namespace {

using intents::IntentFile;

std::filesystem::path written(const IntentFile& file, const std::filesystem::path& folder) {
  platform::PosixFileManager files;
  // The last part alone: a name with folders in it doesn't lead out of this one.
  const std::filesystem::path name = std::filesystem::path(file.filename).filename();
  std::filesystem::path path = folder / name;
  // Writing is the test whether a name is taken: nobody can take it in between.
  for (int number = 2; !files.writeNewFileAtomically(path, file.data); ++number)
    path = folder / fmt::format("{} {}{}", name.stem().string(), number, name.extension().string());
  return path;
}

} // namespace

host::ActionResult withFilesIn(const std::filesystem::path& folder, host::ActionResult result) {
  std::error_code error;
  // A path that is printed is read by other programs, in other folders.
  const std::filesystem::path absolute = std::filesystem::absolute(folder).lexically_normal();
  std::filesystem::create_directories(absolute, error);
  if (error)
    throw platform::FileFailure("make the folder", absolute, error.value());
  host::forEachFile(result.value, result.type, [&](boost::json::value& value) {
    const auto file = intents::propertyFromJson<std::optional<IntentFile>>(value);
    value = {{"filename", file->filename}, {"type", file->type}, {"path", written(*file, absolute).string()}};
  });
  return result;
}

} // namespace tabwright::app
