#include "markdown/Document.h"
#include "markdown/RichText.h"
#include "markdown/Theme.h"

#include <cstdint>
#include <string_view>

/// Any bytes are Markdown, and showing it comes to an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tabwright::markdown;
  const Document document = parse({reinterpret_cast<const char*>(data), size});
  static_cast<void>(richText(document, markdownTheme, ColourScheme::dark));
  return 0;
}
