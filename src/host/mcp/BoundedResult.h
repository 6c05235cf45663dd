#pragma once

#include <boost/json/value.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace tabwright::host {

/// Bounds of what an agent is sent of a result, in bytes: anything longer would fill its memory with one page.
struct ResultBounds {
  std::size_t text = 40'000;  ///< of one text
  std::size_t whole = 80'000; ///< of all texts, and what stands around them
};

/// Takes empty texts, empty lists and nulls out of the objects in a result, at any depth. Items of lists stay, and so
/// do false, 0 and empty objects.
void dropEmptyFields(boost::json::value& value);

/// Shortens what is too long, at any depth, so that the value keeps its form: texts lose their end (between
/// characters), lists their last items. Yields a phrase for each place that lost something, such as
/// "htmlDocument from character 40000 of 2980000 on"; characters are counted as JavaScript counts them.
[[nodiscard]] std::vector<std::string> shorten(boost::json::value& value, const ResultBounds& bounds = {});

} // namespace tabwright::host
