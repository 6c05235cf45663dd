#include "applescript/SyntaxDictionaries.h"
#include "applescript/syntax/Parser.h"
#include "applescript/syntax/Printer.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// Whatever the text, the parser ends with a tree or with errors inside of the text; and a tree printed and parsed again
// prints the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tabwright::applescript;
  const test::SyntaxDictionaries dictionaries;
  const std::string source(reinterpret_cast<const char*>(data), size);

  const ParseResult first = parse(source, dictionaries);
  for (const ScriptError& error : first.errors) {
    if (!error.range() || error.range()->end() > size)
      std::abort();
  }
  if ((first.tree == nullptr) == first.errors.empty())
    std::abort();
  if (!first.tree)
    return 0;

  const std::string printed = print(*first.tree);
  const ParseResult again = parse(printed, dictionaries);
  if (!again.tree || print(*again.tree) != printed) {
    std::fprintf(stderr, "printed as:\n%s\n", printed.c_str());
    std::abort();
  }
  return 0;
}
