#include "html/ParseFault.h"

#include <fmt/core.h>

namespace tabwright::html {

std::string ParseFault::errorDescription() const {
  return fmt::format("The page has {} bytes. At most {} can be read.", length_, maximum_);
}

} // namespace tabwright::html
