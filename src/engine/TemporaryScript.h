#pragma once

#include "engine/ScriptacularServices.h"

#include <filesystem>
#include <string_view>

namespace tabwright::engine {

/// A script's text in a file of its own, for as long as this object lives.
///
/// The file lies in the folder `Temp` of the application scripts folder and is named after the time:
/// `Temp/788918400.123456.applescript`. Two scripts of one instant get two files.
class TemporaryScript {
public:
  /// Writes `text`, untrimmed. Throws `ScriptacularError`: `missingScript` for a blank text,
  /// `unableToLocateApplicationScriptsFolder`, `unableToCreateTempFolder`, `unableToWrite`.
  [[nodiscard]] static TemporaryScript write(std::string_view text, const ScriptacularServices& services);

  /// Removes the file. One that can't be removed is logged and reported, nothing more.
  ~TemporaryScript();
  TemporaryScript(const TemporaryScript&) = delete;
  TemporaryScript& operator=(const TemporaryScript&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
  TemporaryScript(std::filesystem::path path, const ScriptacularServices& services);

  std::filesystem::path path_;
  platform::FileManager& files_;
  crashreport::CrashReporter& crashReporter_;
};

} // namespace tabwright::engine
