#pragma once

#include <boost/json/value.hpp>

#include <list>
#include <mutex>
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
struct PageJob {
  std::string canary;
  std::string result;

  /// What is put behind the job's code: its value is a list of the job's result, or null when that isn't there within a
  /// tenth of a second, and is asked for then.
  [[nodiscard]] std::string resultExpression() const;
};

/// The job that the code plants; nothing for other JavaScript.
[[nodiscard]] std::optional<PageJob> readPageJob(std::string_view javascript);

/// Results that came along, until their programs have asked for them. Safe from any thread.
class PageJobResults {
public:
  void keep(PageJob job, boost::json::value result);
  /// The answer to a question about a job whose result is here; nothing for other JavaScript.
  [[nodiscard]] std::optional<boost::json::value> answer(std::string_view javascript);

private:
  struct Kept {
    PageJob job;
    boost::json::value result;
  };

  std::mutex mutex_;
  std::list<Kept> kept_; // oldest first; programs that were stopped never ask
};

} // namespace tabwright::scripting
