#pragma once

#include "applescript/terminology/Terminology.h"
#include "applescript/values/ScriptableApplication.h"

#include <memory>
#include <string_view>

namespace tabwright::applescript {

/// Finds applications and their dictionaries: the parser asks for dictionaries, the evaluator for applications.
/// Implemented outside of the language, which knows no application.
///
/// Bundle identifiers and names are compared ignoring case. Called from every thread that parses or runs a script, from
/// several at once. An application that isn't there is never an error here: the answer is null.
class ApplicationDirectory {
public:
  virtual ~ApplicationDirectory() = default;

  /// The dictionary of an application that the text names literally; null when no such application is known. The
  /// terminology lives as long as the directory. Needs no running application.
  [[nodiscard]] virtual const Terminology* terminologyByID(std::string_view bundleIdentifier) const = 0;
  /// As above, for `application "NAME"`.
  [[nodiscard]] virtual const Terminology* terminologyByName(std::string_view name) const = 0;

  /// The application itself; null when it isn't installed, which the evaluator reports as error −1728
  /// (`Can’t get application id "…".`).
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByID(std::string_view bundleIdentifier) = 0;
  /// As above, for `application "NAME"`.
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByName(std::string_view name) = 0;
};

} // namespace tabwright::applescript
