#include "applescript/ParserTestSupport.h"
#include "applescript/syntax/Printer.h"
#include "support/SourceFolder.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace tabwright::applescript::test {
namespace {

/// Parses, prints, parses again; the second print must be the first. Gives what was printed.
std::string roundTrip(const std::string& source) {
  const SyntaxDictionaries dictionaries;
  const ParseResult first = parse(source, dictionaries);
  if (!first.tree) {
    ADD_FAILURE() << first.errors.front().errorDescription() << "\n" << source;
    return {};
  }
  const std::string printed = print(*first.tree);
  const ParseResult again = parse(printed, dictionaries);
  if (!again.tree) {
    ADD_FAILURE() << again.errors.front().errorDescription() << "\n" << printed;
    return printed;
  }
  EXPECT_EQ(print(*again.tree), printed);
  return printed;
}

TEST(Printer, LaysOutBlocks) {
  EXPECT_EQ(
      roundTrip("on f(a)\nif a then\nreturn 1\nelse if b\nreturn 2\nelse\nrepeat 3 times\nbeep\nend\nend\nend"),
      "on f(a)\n\tif a then\n\t\treturn 1\n\telse if b then\n\t\treturn 2\n\telse\n\t\trepeat 3 times\n\t\t\tbeep\n"
      "\t\tend repeat\n\tend if\nend f\n");
  EXPECT_EQ(roundTrip("tell application \"System Events\" to tell process \"Safari\"\nclick menu 1\nend"),
            "tell application \"System Events\" to tell process \"Safari\"\n\tclick menu 1\nend tell\n");
  EXPECT_EQ(roundTrip("try\nerror \"x\" number 3\non error m number n\nend"),
            "try\n\terror \"x\" number 3\non error m number n\nend try\n");
}

TEST(Printer, WritesWhatParsesAgain) {
  for (const auto& [source, printed] : std::vector<ParserCase>{
           {"set x to |error| & |any text| & |tab|", "set x to |error| & |any text| & |tab|\n"},
           {"a's b of c's d", "a's b of c's d\n"},
           {"x exists and y does not exist", "x exists and y exists = false\n"},
           {"windows whose x", "every window whose x\n"},
           {"third window whose x", "3rd window whose x\n"},
           {"every window whose (x) of every window", "every window of every window whose (x)\n"},
           {"on setA:x b:y\nend", "on setA:x b:y\nend message\n"},
           {"repeat with tab in xs\nend", "repeat with |tab| in xs\nend repeat\n"},
       })
    EXPECT_EQ(roundTrip(source), printed) << source;
}

TEST(Printer, KeepsCommentsEmptyLinesAndContinuedLines) {
  EXPECT_EQ(roundTrip("#!/usr/bin/env tabwright applescript\n(* two\n  lines *)\n\n\nset x to {1, ¬\n2} -- three\n"
                      "if x then # four\n-- five\nbeep (* six *) 1 --seven\n\n-- eight\nelse -- nine\n-- ten\nend\n"
                      "try\n-- eleven\non error\n-- twelve\nend try -- thirteen\ndisplay dialog x & ¬\n"
                      "\"a\" ¬\nwith title \"b\"\n-- end"),
            "#!/usr/bin/env tabwright applescript\n(* two\n  lines *)\n\nset x to {1, ¬\n\t2} -- three\n"
            "if x then # four\n\t-- five\n\tbeep 1 (* six *) --seven\n\n\t-- eight\nelse -- nine\n\t-- ten\nend if\n"
            "try\n\t-- eleven\non error\n\t-- twelve\nend try -- thirteen\ndisplay dialog x & ¬\n"
            "\t\"a\" ¬\n\twith title \"b\"\n-- end\n");
}

/// The script texts that the engine assembles its programs from, their placeholders filled in.
TEST(Printer, RoundTripsTheEnginesScripts) {
  const std::filesystem::path folder = testsupport::sourceFolder() / "resources" / "engine";
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".applescript")
      continue;
    const bool isSafaris = entry.path().stem() == "safariLibrary";
    std::string text = testsupport::sourceText(entry.path());
    text =
        testsupport::replacingAll(text, "__BROWSER_BUNDLE_ID__", isSafaris ? "com.apple.safari" : "com.google.chrome");
    text = testsupport::replacingAll(text, "__MAIN_RECEIVER_ID__", "com.google.chrome");
    text = testsupport::replacingAll(text, "__HELD__", "command down");
    text = testsupport::replacingAll(text, "__KEYS__", "command");
    text = testsupport::replacingAll(text, "__SECONDS__", "0.1");
    text = testsupport::replacingAll(text, "__TARGET__", "com.google.chrome");
    text = testsupport::replacingAll(text, "__ARGKEYS__", "a, newUrl");
    text = testsupport::replacingAll(text, "__APPLESCRIPT__", "return success(my getFrontVars())");
    if (entry.path().stem() == "simulateTyping") // whose block speaks to System Events
      text = "tell application \"System Events\"\n" + text + "\nend tell";
    SCOPED_TRACE(entry.path().filename());
    EXPECT_FALSE(roundTrip(text).empty());
    ++count;
  }
  EXPECT_GE(count, 5u);
}

} // namespace
} // namespace tabwright::applescript::test
