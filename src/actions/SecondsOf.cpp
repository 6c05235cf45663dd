#include "actions/SecondsOf.h"

#include <charconv>

namespace tabwright::actions {

double secondsOf(std::string_view text) {
  double seconds = 0.0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  return failed == std::errc{} && end == text.data() + text.size() ? seconds : 0.0;
}

} // namespace tabwright::actions
