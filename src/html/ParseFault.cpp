#include "html/ParseFault.h"

#include <fmt/core.h>

namespace tabwright::html {

std::string ParseFault::errorDescription() const {
  return fmt::format("The page has more than {} {}: it is too large to be read.", maximum_,
                     bound_ == Bound::bytes ? "bytes" : "tags and attributes");
}

} // namespace tabwright::html
