#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace tabwright::platform {

/// The kind of a failure, by which those who report it go on.
enum class FailureClass {
  failed,      ///< what was asked for came to nothing
  wrongUse,    ///< what was asked for can't be: an unknown name, a wrong value, a missing one. Nothing has been run
  unreachable, ///< a browser that is known could not be reached; the sentence says what to do
  notFound,    ///< no browser was found, for whatever reason
  system,      ///< the system refused something, such as to write a file
};

/// The facts that a program may ask of a failure, beside its sentence: which catalogue it is from, and which case.
///
///     {"AppleScriptRuntimeError", "tabNotFound", number, FailureClass::failed}
struct FailureIdentity {
  std::string type;          ///< the catalogue's name, such as "AppleScriptRuntimeError"
  std::string caseName;      ///< the case, such as "tabNotFound"
  std::optional<int> number; ///< the case's number, where the catalogue numbers its cases
  FailureClass failureClass = FailureClass::failed;
};

/// Something that a user is told beside what was asked for: the cause that lies beneath a failure, or what a success
/// should not hide.
struct Notice {
  FailureIdentity identity;
  std::string sentence;                 ///< UTF-8, never empty: what is so and, where there is something, what to do
  std::optional<std::size_t> line = {}; ///< of the user's own text, from 1
};

/// The one base of everything this project throws.
///
/// Purpose: a host of actions can show any failure to a user with `errorDescription()` alone, and can tell kinds
/// apart with `identity()` without knowing the concrete type.
///
/// Failures of enums are made with `failure(...)`:
///
///     throw failure(AppleScriptRuntimeError::tabNotFound);
///
/// Foreign failures (errno, protocol errors) are translated into a subclass once, where they enter.
///
/// A cause is put beneath the sentence of a catalogue that hides what really happened:
///
///     throw failure(ScriptacularError::malformedScript).causedBy(cause);
class Failure : public std::exception {
public:
  /// The sentence shown to the user, UTF-8, never empty. In the user's language where the catalogue is translated, else
  /// in English.
  [[nodiscard]] virtual std::string errorDescription() const = 0;

  /// Kind of the failure, for programs. It stays the same however the sentence is worded or translated.
  [[nodiscard]] virtual FailureIdentity identity() const = 0;

  /// The cause beneath this failure; nothing for most, whose sentence says it all. Valid as long as the failure lives
  /// and has no other set.
  [[nodiscard]] const std::optional<Notice>& cause() const noexcept { return cause_; }
  /// Replaces the cause, or takes it away.
  void setCause(std::optional<Notice> cause) { cause_ = std::move(cause); }

  /// The sentence again, for loggers and debuggers. Valid as long as the failure lives.
  [[nodiscard]] const char* what() const noexcept override {
    try {
      if (what_.empty())
        what_ = errorDescription();
      return what_.c_str();
    } catch (...) {
      return "failure";
    }
  }

private:
  /// Copied with the failure.
  std::optional<Notice> cause_;
  /// Filled by the first `what()`, whose pointer has to outlive the call.
  mutable std::string what_;
};

/// A failure that is one case of an enum.
///
/// The enum's header declares, beside it and found by argument-dependent lookup:
///
///     std::string errorDescription(Kind kind, const std::string& detail);
///     platform::FailureIdentity identity(Kind kind);
///
/// Its source has a `FailureTable` of the cases, which both are read from.
///
/// `detail` is the payload of cases that carry a text, and empty for the others.
template <class Kind>
class CatalogueFailure final : public Failure {
public:
  /// Mostly made by `failure(...)`. The sentence is put together when it is asked for.
  explicit CatalogueFailure(Kind kind, std::string detail = {}) : kind_(kind), detail_(std::move(detail)) {}

  /// The case, for callers that go on differently by it.
  [[nodiscard]] Kind kind() const noexcept { return kind_; }
  /// The payload as it was given, UTF-8.
  [[nodiscard]] const std::string& detail() const noexcept { return detail_; }

  /// The same failure with its cause. For a failure that was just made, as in a `throw`.
  [[nodiscard]] CatalogueFailure causedBy(std::optional<Notice> cause) && {
    setCause(std::move(cause));
    return std::move(*this);
  }

  [[nodiscard]] std::string errorDescription() const override { return describe(kind_, detail_); }
  [[nodiscard]] FailureIdentity identity() const override { return identify(kind_); }

private:
  // The members above hide the free functions of the same name, so the lookup happens out here.
  static std::string describe(Kind kind, const std::string& detail);
  static FailureIdentity identify(Kind kind);

  Kind kind_;
  std::string detail_;
};

/// From here the names mean the functions beside the enum, which argument-dependent lookup finds where a member of the
/// same name would hide them.
namespace detail {
template <class Kind>
std::string describeByLookup(Kind kind, const std::string& text) {
  return errorDescription(kind, text);
}
template <class Kind>
FailureIdentity identifyByLookup(Kind kind) {
  return identity(kind);
}
} // namespace detail

template <class Kind>
std::string CatalogueFailure<Kind>::describe(Kind kind, const std::string& detail) {
  return detail::describeByLookup(kind, detail);
}
template <class Kind>
FailureIdentity CatalogueFailure<Kind>::identify(Kind kind) {
  return detail::identifyByLookup(kind);
}

/// The failure as the cause of another: what lies beneath it itself, where there is something, else its own sentence.
/// So a chain of translations keeps the cause at its bottom, which says what happened.
[[nodiscard]] inline Notice asCause(const Failure& failure) {
  return failure.cause() ? *failure.cause() : Notice{failure.identity(), failure.errorDescription()};
}

/// Makes the thrown value of an enum's case: `throw failure(ScriptacularError::missingScript);`.
template <class Kind>
[[nodiscard]] CatalogueFailure<Kind> failure(Kind kind, std::string detail = {}) {
  return CatalogueFailure<Kind>(kind, std::move(detail));
}

} // namespace tabwright::platform
