// Runs the language tests in scripts/ (see the README there): one test per file. What is printed of each must come to
// the same outcome.
#include "EmptyDirectory.h"
#include "applescript/Interpreter.h"
#include "applescript/syntax/Parser.h"
#include "applescript/syntax/Printer.h"
#include "support/SourceFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace tabwright::applescript {
namespace {

const std::filesystem::path scriptFolder = testsupport::sourceFolder() / "tests/applescript/scripts";
constexpr std::string_view arrow = " --> ";

struct Expectation {
  std::string program;
  std::string expected;
  std::size_t line = 0;
};

std::vector<Expectation> expectationsIn(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::vector<Expectation> expectations;
  std::string beginning;
  std::size_t number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    const std::size_t at = line.rfind(arrow);
    if (line.empty())
      beginning.clear();
    else if (at == std::string::npos)
      beginning += line + "\n";
    else
      expectations.push_back({beginning + line.substr(0, at), line.substr(at + arrow.size()), number});
  }
  return expectations;
}

std::string outcomeOf(const std::string& program) {
  EmptyDirectory directory;
  Surroundings surroundings;
  surroundings.directory = &directory;
  surroundings.sleep = [](std::chrono::nanoseconds, std::stop_token) {};
  surroundings.now = [] { return 791546400.0; }; // 2026-01-31 10:00:00
  surroundings.random = [] { return 0.5; };
  Interpreter interpreter(surroundings);
  try {
    const auto script = interpreter.compile(program);
    const Value value = interpreter.run(*script);
    return value.isNothing() ? "nothing" : sourceForm(value);
  } catch (const ScriptError& error) {
    return "error " + std::to_string(error.number()) + " " + error.message();
  }
}

std::string printedOf(const std::string& program) {
  EmptyDirectory directory;
  const ParseResult parsed = parse(program, directory);
  return parsed.tree ? print(*parsed.tree) : program;
}

bool fulfils(const std::string& outcome, const std::string& expected) {
  // The sentence of an error need not be told, nor to its end.
  return expected.starts_with("error ") ? (outcome + " ").starts_with(expected + " ") || outcome.starts_with(expected)
                                        : outcome == expected;
}

std::vector<std::string> scriptFiles() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(scriptFolder)) {
    if (entry.path().extension() == ".applescript")
      files.push_back(std::filesystem::relative(entry.path(), scriptFolder).string());
  }
  std::ranges::sort(files);
  return files;
}

class ScriptTests : public testing::TestWithParam<std::string> {};

TEST_P(ScriptTests, MeetsItsExpectations) {
  const auto expectations = expectationsIn(scriptFolder / GetParam());
  ASSERT_FALSE(expectations.empty());
  for (const Expectation& expectation : expectations) {
    for (const std::string& program : {expectation.program, printedOf(expectation.program)}) {
      const std::string outcome = outcomeOf(program);
      EXPECT_TRUE(fulfils(outcome, expectation.expected))
          << GetParam() << ":" << expectation.line << "\n"
          << program << "\n  expected " << expectation.expected << "\n  but came to " << outcome;
    }
  }
}

std::string nameOf(const testing::TestParamInfo<std::string>& file) {
  std::string name = std::filesystem::path(file.param).replace_extension().string();
  std::ranges::replace_if(name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Language, ScriptTests, testing::ValuesIn(scriptFiles()), nameOf);

} // namespace
} // namespace tabwright::applescript
