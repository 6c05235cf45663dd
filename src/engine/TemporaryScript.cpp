// The steps, each with its own failure: test the text, find the scripts folder, ensure the folder Temp, find a free
// name, write. A taken name moves on to the next moment that a double can tell apart.
#include "engine/TemporaryScript.h"

#include "engine/ScriptText.h"
#include "engine/errors/ScriptacularError.h"
#include "platform/Logger.h"
#include "platform/Whitespace.h"

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace tabwright::engine {
namespace {

using platform::Failure;
using platform::FileKind;

const platform::Logger temporaryLog("Scriptacular");

/// `beneath` is what it came to, told to the user beneath the error's own sentence.
[[noreturn]] void failWith(ScriptacularError error, const Failure* beneath = nullptr) {
  temporaryLog.error("{}", errorDescription(error));
  throw platform::failure(error).causedBy(beneath ? std::optional(platform::asCause(*beneath)) : std::nullopt);
}

std::filesystem::path tempFolder(platform::FileManager& files) {
  try {
    return TemporaryScript::folder(files);
  } catch (const Failure& error) {
    failWith(ScriptacularError::unableToLocateApplicationScriptsFolder, &error);
  }
}

void ensureTempFolder(const std::filesystem::path& folder, const ScriptacularServices& services) {
  const auto kind = services.files.kindOfFile(folder);
  if (kind == FileKind::folder)
    return;
  // A file in the folder's place stays there: it isn't ours to remove.
  if (kind)
    failWith(ScriptacularError::unableToCreateTempFolder);
  try {
    services.files.createDirectory(folder);
  } catch (const Failure& error) {
    services.crashReporter.captureError(error);
    failWith(ScriptacularError::unableToCreateTempFolder, &error);
  }
}

std::unique_ptr<platform::WrittenFile> writeUnderFreeName(const std::filesystem::path& folder, std::string_view text,
                                                          const ScriptacularServices& services) {
  try {
    // The write itself tells a taken name, so two processes can't get the same file.
    for (double time = services.clock.secondsSinceReferenceDate();;
         time = std::nextafter(time, std::numeric_limits<double>::infinity())) {
      const std::filesystem::path path = folder / textOfDouble(time).append(TemporaryScript::fileEnding);
      if (auto file = services.files.writeNewFileAtomically(path, text))
        return file;
    }
  } catch (const Failure& error) {
    services.crashReporter.captureError(error);
    temporaryLog.error("{}", error.errorDescription());
    throw platform::failure(ScriptacularError::unableToWrite).causedBy(platform::asCause(error));
  }
}

} // namespace

TemporaryScript TemporaryScript::write(std::string_view text, const ScriptacularServices& services) {
  if (platform::isBlank(text)) {
    temporaryLog.error("No script passed in during initialization");
    throw platform::failure(ScriptacularError::missingScript);
  }
  const std::filesystem::path folder = tempFolder(services.files);
  ensureTempFolder(folder, services);
  return TemporaryScript(writeUnderFreeName(folder, text, services), services);
}

std::filesystem::path TemporaryScript::folder(platform::FileManager& files) {
  return files.applicationScriptsFolder() / "Temp";
}

TemporaryScript::TemporaryScript(std::unique_ptr<platform::WrittenFile> file, const ScriptacularServices& services)
    : file_(std::move(file)), files_(services.files), crashReporter_(services.crashReporter) {}

TemporaryScript::~TemporaryScript() {
  try {
    files_.remove(file_->path());
  } catch (const std::exception& error) {
    // The run's outcome counts, and a destructor must not replace it.
    crashReporter_.captureError(error);
    temporaryLog.error("{}", error.what());
  }
}

} // namespace tabwright::engine
