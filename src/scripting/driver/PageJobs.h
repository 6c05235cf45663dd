#pragma once

#include "platform/Failure.h"
#include "platform/Mutex.h"

#include <boost/json/value.hpp>

#include <list>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::scripting {

/// A job that a generated program plants in a page, known by its two variables on `window`: one that says that the page
/// is still the same, and one that holds the result once it is there. The program then asks for both until it has it.
///
/// The browser hands a page nothing more as soon as it leaves for another address, so a job that clicks on a link could
/// never be asked: each question would wait for the new page and find no job in it. Therefore the planting evaluation
/// brings a result that comes at once along with it, and the questions after it are answered from that.
///
/// Nor are the lines run that deliver the result in the page, since the page may have changed the functions they call:
/// the job's function is handed to one of ours (`resources/driver/pageJob.js`), and what that yields is an outcome.
struct PageJob {
  /// The names of both variables: two underscores and a ULID.
  std::string canary;
  std::string result;
  /// The code to evaluate in place of the program's text. Its value is the job's outcome, or null when there is none
  /// within a tenth of a second; then the outcome is what the result's variable holds later.
  std::string code;

  /// True when all that it does is to load the page anew.
  [[nodiscard]] bool reloadsThePage() const;
};

/// The job that the code plants; nothing for other JavaScript.
[[nodiscard]] std::optional<PageJob> readPageJob(std::string_view javascript);

/// The end of a job in its page.
struct PageJobOutcome {
  /// The program's answer: the list of its texts, or -1, "not yet", for a job that failed.
  boost::json::value answer;
  /// The reason for a job that failed, for the run's user: the program itself only learns that no result comes.
  std::optional<platform::Notice> failure;

  /// Reads what `resources/driver/pageJob.js` yields or leaves behind; nothing for any other value.
  [[nodiscard]] static std::optional<PageJobOutcome> read(const boost::json::value& value);
};

/// True for JavaScript that asks for the result of a job, whichever job that is.
[[nodiscard]] bool asksForResult(std::string_view javascript);

/// The notice of a job that the page could not even begin: the text of the exception.
[[nodiscard]] platform::Notice notBegun(const std::string& exception);

/// Results that came along, until their programs have asked for them. Keeps the last 64 of each kind and forgets those
/// before them. Safe from any thread.
///
///     results.keep(*job, outcome.answer);
///     results.answer("window.__01J… || -1"); // the answer, as often as it is asked for
///     results.answer("delete window.__01J…"); // true; forgotten from then on
class PageJobResults {
public:
  /// Keeps what the program's question is to be answered with. The job's code is dropped.
  void keep(PageJob job, boost::json::value answer);
  /// The job's page is still to come. Until it is taken back its program is told that all is well, and no result there.
  void defer(PageJob job);
  /// The deferred job whose result is asked for; nothing for other JavaScript.
  [[nodiscard]] std::optional<PageJob> takeDeferred(std::string_view javascript);
  /// The answer to a question about a job whose result is here; nothing for other JavaScript.
  [[nodiscard]] std::optional<boost::json::value> answer(std::string_view javascript);

private:
  struct Kept {
    PageJob job;
    boost::json::value answer;
  };

  platform::Mutex mutex_;
  std::list<PageJob> deferred_ GUARDED_BY(mutex_);
  std::list<Kept> kept_ GUARDED_BY(mutex_); // oldest first; programs that were stopped never ask
};

} // namespace tabwright::scripting
