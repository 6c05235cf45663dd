// A job can answer with nothing but texts, so a failure of its element is told by five of them, the first of which no
// function of the library gives in that company.
#include "engine/errors/ElementError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

#include <algorithm>
#include <utility>

namespace tabwright::engine {
namespace {

using enum ElementError;
constexpr platform::FailureTable<ElementError, 6> elementErrors{
    "ElementError",
    {{unknown, "unknown", "enum.ElementError.unknown %@"},
     {gone, "gone", "enum.ElementError.gone %@ %@"},
     {changed, "changed", "enum.ElementError.changed %@ %@ %@"},
     {ambiguous, "ambiguous", "enum.ElementError.ambiguous %@ %@ %@"},
     {notFound, "notFound", "enum.ElementError.notFound %@"},
     {unreadable, "unreadable", "enum.ElementError.unreadable %@ %@"}}};

constexpr std::size_t partsOfAnswer = 5;

} // namespace

ElementFailure::ElementFailure(ElementError kind, std::string asked, std::string detail, std::string candidates)
    : kind_(kind), asked_(std::move(asked)), detail_(std::move(detail)), candidates_(std::move(candidates)) {}

std::optional<ElementFailure> ElementFailure::inAnswer(const std::vector<std::string>& answer) {
  if (answer.size() != partsOfAnswer || answer.front() != "element failure")
    return std::nullopt;
  const auto row =
      std::ranges::find(elementErrors.rows(), answer[1], [](const auto& one) { return std::string(one.caseName); });
  if (row == elementErrors.rows().end())
    return std::nullopt;
  return ElementFailure(row->kind, answer[2], answer[3], answer[4]);
}

std::string ElementFailure::errorDescription() const {
  std::string sentence = platform::localizedFormat(elementErrors[kind_].sentence, {asked_, detail_, candidates_});
  // Of these the sentence has the candidates in it.
  if (!candidates_.empty() && kind_ != changed && kind_ != ambiguous)
    sentence += " " + platform::localizedFormat("enum.ElementError.nearest %@", {candidates_});
  return sentence;
}

platform::FailureIdentity ElementFailure::identity() const {
  return elementErrors.identity(kind_);
}

} // namespace tabwright::engine
