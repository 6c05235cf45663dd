// Only the mark and the first bytes decide: nothing is guessed from the text. ICU knows the encodings and their many
// names; a page that names UTF-8 or none is given back as it is, and its reader mends what isn't.
#include "html/Encoding.h"

#include "platform/AsciiCase.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <memory>

namespace tabwright::html {

namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

/// The encoding that a `meta` element within the first bytes names; empty for none.
std::string declaredEncoding(std::string_view bytes) {
  constexpr std::size_t prescan = 1024;
  const std::string start = platform::lowercased(bytes.substr(0, prescan));
  constexpr std::string_view blanks = " \t\r\n\f";
  for (std::size_t meta = start.find("<meta"); meta != std::string::npos; meta = start.find("<meta", meta + 1)) {
    // "charset" may be the attribute itself, or stand in the value of `content`: both are found.
    const std::string_view tag = std::string_view(start).substr(meta, start.find('>', meta) - meta);
    const std::size_t charset = tag.find("charset");
    if (charset == std::string_view::npos)
      continue;
    const std::size_t equals = tag.find_first_not_of(blanks, charset + 7);
    if (equals == std::string_view::npos || tag[equals] != '=')
      continue;
    const std::size_t begin = tag.find_first_not_of(" \t\r\n\f\"'", equals + 1);
    if (begin == std::string_view::npos)
      continue;
    return std::string(tag.substr(begin, tag.find_first_of(" \t\r\n\f\"';/", begin) - begin));
  }
  return {};
}

} // namespace

std::string decodedPage(std::string bytes) {
  std::string encoding;
  if (bytes.starts_with("\xEF\xBB\xBF"))
    return bytes.substr(3);
  if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"))
    encoding = "UTF-16"; // ICU takes the mark
  else
    encoding = declaredEncoding(bytes);
  if (encoding.starts_with("utf-16") || encoding == "utf-8" ||
      encoding.empty()) // a page that could be read so far is UTF-8
    return bytes;
  UErrorCode status = U_ZERO_ERROR;
  if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "ascii" || encoding == "us-ascii")
    encoding = "windows-1252"; // as the web's encodings have it
  const std::unique_ptr<UConverter, ConverterCloser> converter(ucnv_open(encoding.c_str(), &status));
  if (U_FAILURE(status))
    return bytes;
  const icu::UnicodeString text(bytes.data(), static_cast<int32_t>(bytes.size()), converter.get(), status);
  if (U_FAILURE(status))
    return bytes;
  std::string utf8;
  return text.toUTF8String(utf8);
}

} // namespace tabwright::html
