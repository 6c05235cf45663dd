#pragma once

#include "applescript/SourceRange.h"
#include "platform/Failure.h"

#include <memory>
#include <optional>
#include <string>

namespace tabwright::applescript {

class Value;

/// AppleScript's error numbers, as scripts see them in `on error … number n`. Scripts may raise any other number, too.
namespace errorNumber {
inline constexpr int userCancelled = -128;
inline constexpr int applicationNotRunning = -600;
inline constexpr int connectionInvalid = -609;
inline constexpr int cannotMake = -1700;   ///< Can’t make … into type …
inline constexpr int outOfMemory = -108;   ///< a limit on memory or output was reached
inline constexpr int noSuchObject = -1728; ///< Can’t get …
inline constexpr int notHandled = -1708;   ///< … doesn’t understand the … message
inline constexpr int timedOut = -1712;
inline constexpr int notAuthorised = -1743; ///< not authorised to send Apple events
inline constexpr int missingParameter = -1715;
inline constexpr int invalidIndex = -1719;
inline constexpr int wrongParameters = -1721; ///< the arguments don't match the handler's parameters
inline constexpr int userError = -2700;       ///< an `error` statement without number
inline constexpr int divisionByZero = -2701;
inline constexpr int numericOverflow = -2702;
inline constexpr int stackOverflow = -2706; ///< handlers nested too deeply
inline constexpr int syntaxError = -2741;   ///< expected … but found …
inline constexpr int unknownToken = -2740;
inline constexpr int duplicateProperty = -2751;
inline constexpr int duplicateHandler = -2752;
inline constexpr int undefinedVariable = -2753;
inline constexpr int noResult = -2763;     ///< an expression came to nothing where a value is needed
inline constexpr int invalidDate = -30720; ///< `date "…"` with a text that is none
inline constexpr int handlerFailed = -10000;
inline constexpr int privilege = -10004;
inline constexpr int cannotSet = -10006;
} // namespace errorNumber

/// A script that doesn't compile, or an error that ended a run (or that a `try` is about to catch).
///
/// Carries AppleScript's number and sentence, the range in the source where it arose (the innermost statement or
/// expression being evaluated), and, for errors of an application, that application's name.
class ScriptError : public platform::Failure {
public:
  /// Found while the text was read, or raised by a run.
  enum class Stage { syntax, execution };

  /// A sentence that is put into words when it is asked for: most errors that scripts catch are never read.
  class Sentence {
  public:
    virtual ~Sentence() = default;
    /// The whole sentence. May be asked for again, and then gives what its values have become since.
    [[nodiscard]] virtual std::string text() const = 0;
  };

  /// A range of no length at offset 0 stands for none.
  ScriptError(Stage stage, int number, std::string sentence, SourceRange range = {});
  /// An error of execution.
  ScriptError(int number, std::shared_ptr<const Sentence> sentence);

  [[nodiscard]] Stage stage() const { return stage_; }
  [[nodiscard]] int number() const { return number_; }
  /// The sentence as `on error text` binds it, with "NAME got an error: " in front when an application raised it.
  [[nodiscard]] std::string message() const;
  /// The sentence without the application.
  [[nodiscard]] std::string sentence() const { return wordless_ ? wordless_->text() : sentence_; }
  /// The application that raised it; nothing when the script itself did.
  [[nodiscard]] const std::optional<std::string>& application() const { return application_; }
  /// Nothing until the evaluator or the parser knows the place.
  [[nodiscard]] const std::optional<SourceRange>& range() const { return range_; }

  /// Values of `from`, `partial result` and `to`; null when absent.
  std::shared_ptr<const Value> offendingObject;
  std::shared_ptr<const Value> partialResult;
  std::shared_ptr<const Value> expectedType;

  /// Puts the sentence into words now. Until then it may depend on values of the script that raised it.
  ScriptError& settle();
  /// Names the application that the error comes from, in place of one named before. Like `settle` and `at` it gives
  /// back the error itself, for `throw error.raisedBy(…)`.
  ScriptError& raisedBy(std::string application);
  /// Sets the range unless an inner place has set it already.
  ScriptError& at(SourceRange range);

  /// "execution error: SENTENCE (NUMBER)", or "syntax error: …".
  [[nodiscard]] std::string errorDescription() const override;
  /// FailureClass::unreachable where the application isn't running (−600), has gone (−609) or may not be asked (−1743);
  /// else failed.
  [[nodiscard]] platform::FailureIdentity identity() const override;

private:
  Stage stage_;
  int number_;
  std::string sentence_;
  std::shared_ptr<const Sentence> wordless_; // in place of `sentence_`
  std::optional<SourceRange> range_;
  std::optional<std::string> application_;
};

} // namespace tabwright::applescript
