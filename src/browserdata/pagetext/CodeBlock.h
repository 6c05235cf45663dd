#pragma once

#include "html/Node.h"

#include <string>

namespace tabwright::browserdata {

/// The text of an element that keeps its lines as they are.
struct CodeBlock {
  std::string text = {}; ///< without line feeds at its end
  std::string language =
      {}; ///< as the page's classes tell it (“language-…”, “lang-…”, “highlight-source-…”); else empty

  [[nodiscard]] static CodeBlock of(const html::Node& pre);
  /// Between fences that are longer than any in it.
  [[nodiscard]] std::string fenced() const;
};

} // namespace tabwright::browserdata
