#include "intents/ValueError.h"

#include <boost/json/serialize.hpp>

namespace tabwright::intents {

namespace {

// The value is quoted so that it can be recognised, not read through: a page's HTML may stand where a number is meant.
std::string shortened(std::string text) {
  constexpr std::size_t longest = 60;
  if (text.size() <= longest)
    return text;
  std::size_t end = longest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end; // never inside of a character
  return text.substr(0, end) + "…";
}

} // namespace

ValueError ValueError::unsuitable(const boost::json::value& came, std::string_view expected) {
  return ValueError("can't be " + shortened(boost::json::serialize(came)) + "; give " + std::string(expected) + ".");
}

ValueError ValueError::unsuitable(std::string_view came, std::string_view expected) {
  return ValueError("can't be \"" + shortened(std::string(came)) + "\"; give " + std::string(expected) + ".");
}

ValueError ValueError::within(std::string_view name) const {
  ValueError outer(*this);
  outer.place_ = std::string(name) + (place_.empty() ? "" : "." + place_);
  return outer;
}

std::string ValueError::errorDescription() const {
  return place_.empty() ? sentence_ : place_ + " " + sentence_;
}

} // namespace tabwright::intents
