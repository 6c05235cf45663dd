#include "markdown/Document.h"
#include "markdown/RichText.h"
#include "markdown/TerminalText.h"
#include "markdown/Theme.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

/// Any bytes are Markdown. Both ways to show it come to an end, and nothing in it steers the terminal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tabwright::markdown;
  const Document document = parse({reinterpret_cast<const char*>(data), size});
  static_cast<void>(richText(document, markdownTheme, ColourScheme::dark));
  for (const char character : terminalText(document, markdownTheme, 40, TerminalColours::off))
    if (static_cast<unsigned char>(character) < 0x20 && character != '\n')
      std::abort();
  static_cast<void>(terminalText(document, markdownTheme, 100, TerminalColours::on));
  return 0;
}
