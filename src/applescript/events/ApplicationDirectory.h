#pragma once

#include "applescript/terminology/Terminology.h"
#include "applescript/values/ScriptableApplication.h"

#include <memory>
#include <string_view>

namespace tabwright::applescript {

/// Finds applications and their dictionaries.
class ApplicationDirectory {
public:
  virtual ~ApplicationDirectory() = default;

  /// The dictionary of an application that the text names literally; null when no such application is known. The
  /// terminology lives as long as the directory. Needs no running application.
  [[nodiscard]] virtual const Terminology* terminologyByID(std::string_view bundleIdentifier) const = 0;
  [[nodiscard]] virtual const Terminology* terminologyByName(std::string_view name) const = 0;

  /// The application itself; null when it isn't installed, which the evaluator reports as error −1728
  /// (`Can’t get application id "…".`).
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByID(std::string_view bundleIdentifier) = 0;
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByName(std::string_view name) = 0;
};

} // namespace tabwright::applescript
