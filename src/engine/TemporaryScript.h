#pragma once

#include "engine/ScriptacularServices.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace tabwright::engine {

/// A script's text in a file of its own, for as long as this object lives.
///
/// The file lies in the folder `Temp` of the application scripts folder and is named after the time:
/// `Temp/788918400.123456.applescript`. Two scripts of one instant get two files. It is held while this lives, so that
/// what a killed process has left can be told from what is in use.
class TemporaryScript {
public:
  /// Writes `text`, untrimmed. Throws `ScriptacularError`: `missingScript` for a blank text,
  /// `unableToLocateApplicationScriptsFolder`, `unableToCreateTempFolder`, `unableToWrite`.
  [[nodiscard]] static TemporaryScript write(std::string_view text, const ScriptacularServices& services);

  /// Removes the file. One that can't be removed is logged and reported, nothing more.
  ~TemporaryScript();
  TemporaryScript(const TemporaryScript&) = delete;
  TemporaryScript& operator=(const TemporaryScript&) = delete;

  /// The file as it was written; it lives as long as this.
  [[nodiscard]] const platform::WrittenFile& file() const { return *file_; }

  /// The folder of such files; it needn't be there. Throws the manager's `Failure` when there is no place for scripts.
  [[nodiscard]] static std::filesystem::path folder(platform::FileManager& files);
  static constexpr std::string_view fileEnding = ".applescript";

private:
  TemporaryScript(std::unique_ptr<platform::WrittenFile> file, const ScriptacularServices& services);

  std::unique_ptr<platform::WrittenFile> file_;
  platform::FileManager& files_;
  crashreport::CrashReporter& crashReporter_;
};

} // namespace tabwright::engine
