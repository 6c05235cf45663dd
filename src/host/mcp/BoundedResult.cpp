// One walk in the value's own order, with a budget that texts use up: what comes first stays. A tab or window comes
// whole or not at all, and short texts are never cut: half a reference would be worse than none.
#include "host/mcp/BoundedResult.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <string_view>

namespace tabwright::host {

namespace json = boost::json;

namespace {

constexpr std::size_t costOfField = 8; // quotes, colon, comma, and what a number takes
constexpr std::size_t shortText = 1'000;

bool isEmpty(const json::value& value) {
  return value.is_null() || (value.is_string() && value.get_string().empty()) ||
         (value.is_array() && value.get_array().empty());
}

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// UTF-16 units: what slices of texts in JavaScript are counted in.
std::size_t lengthInJavaScript(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return !continuesCharacter(byte); }) +
      std::ranges::count_if(text, [](char byte) { return static_cast<unsigned char>(byte) >= 0xF0U; }));
}

std::size_t costOf(const json::value& value) {
  std::size_t cost = costOfField;
  if (const json::string* text = value.if_string())
    return cost + text->size();
  if (const json::array* list = value.if_array()) {
    for (const json::value& item : *list)
      cost += costOf(item);
  } else if (const json::object* object = value.if_object()) {
    for (const auto& [key, member] : *object)
      cost += key.size() + costOf(member);
  }
  return cost;
}

class Shortening {
public:
  explicit Shortening(const ResultBounds& bounds) : bounds_(bounds), left_(bounds.whole) {}

  std::vector<std::string> lost;

  void shorten(json::value& value, const std::string& place) {
    // Also for what is no text: a list of a million numbers is long, too.
    spend(costOfField);
    if (json::string* text = value.if_string())
      shorten(*text, place);
    else if (json::array* list = value.if_array())
      shorten(*list, place);
    else if (json::object* object = value.if_object()) {
      for (auto& [key, member] : *object) {
        spend(key.size());
        shorten(member, place.empty() ? std::string(key) : place + "." + std::string(key));
      }
    }
  }

private:
  void spend(std::size_t bytes) { left_ -= std::min(bytes, left_); }

  void shorten(json::string& text, const std::string& place) {
    // A short text is let through even where the whole has been used up.
    std::size_t end = std::min({text.size(), bounds_.text, std::max(left_, shortText)});
    // Back to where a character begins.
    while (end > 0 && end < text.size() && continuesCharacter(text[end]))
      --end;
    if (end < text.size()) {
      const std::string_view whole(text);
      lost.push_back(fmt::format("{} from character {} of {} on", place.empty() ? "the text" : place,
                                 lengthInJavaScript(whole.substr(0, end)), lengthInJavaScript(whole)));
      text.resize(end);
    }
    spend(end);
  }

  void shorten(json::array& list, const std::string& place) {
    for (std::size_t index = 0; index < list.size(); ++index) {
      if (left_ == 0 || (index > 0 && list[index].is_object() && costOf(list[index]) > left_)) {
        lost.push_back(
            fmt::format("{}{} of {} items", place.empty() ? "" : place + ": ", list.size() - index, list.size()));
        list.resize(index);
        return;
      }
      shorten(list[index], fmt::format("{}{}item {}", place, place.empty() ? "" : ".", index + 1));
    }
  }

  ResultBounds bounds_;
  std::size_t left_;
};

} // namespace

void dropEmptyFields(json::value& value) {
  if (json::array* list = value.if_array()) {
    std::ranges::for_each(*list, dropEmptyFields);
  } else if (json::object* object = value.if_object()) {
    json::object full(object->storage());
    for (auto& [key, member] : *object) {
      dropEmptyFields(member);
      // Emptied from the inside out, but an object that has lost all its members stays.
      if (!isEmpty(member))
        full.emplace(key, std::move(member));
    }
    *object = std::move(full);
  }
}

std::vector<std::string> shorten(json::value& value, const ResultBounds& bounds) {
  Shortening shortening(bounds);
  shortening.shorten(value, "");
  return std::move(shortening.lost);
}

} // namespace tabwright::host
