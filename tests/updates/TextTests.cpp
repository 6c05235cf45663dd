// Sentences and their translations, held against each other: the English ones stand in the sources.
#include "platform/StringCatalogue.h"
#include "support/SourceFolder.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

namespace tabwright::updates {
namespace {

TEST(UpdateText, IsTranslatedWhereverItIsUsed) {
  std::set<std::string> used;
  const auto collect = [&used](const char* file, const std::regex& pattern) {
    const std::string joined =
        std::regex_replace(testsupport::sourceText(std::string("src/updates/") + file), std::regex("\"\\s+\""), "");
    for (std::sregex_iterator match(joined.begin(), joined.end(), pattern), end; match != end; ++match)
      used.insert((*match)[1]);
  };
  const std::regex calls("updateText\\(\\s*\"([^\"]+)\"");
  for (const char* file : {"Installation.cpp", "UpdateOutcome.cpp", "UpdateSteps.cpp"})
    collect(file, calls);
  collect("UpdateFault.cpp", std::regex("\"\\w+\",\\s*\"([^\"]+ [^\"]+)\"\\}"));

  std::set<std::string> translated;
  const boost::json::value german = boost::json::parse(testsupport::sourceText("resources/strings/de/Updates.json"));
  for (const auto& row : german.as_object())
    translated.insert(std::string(row.key()));
  EXPECT_GT(used.size(), 25u);
  EXPECT_EQ(used, translated);
}

} // namespace
} // namespace tabwright::updates
