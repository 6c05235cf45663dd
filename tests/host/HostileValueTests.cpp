// Values of users, agents and pages that would be code if they got into a program as they stand: each kind of action is
// given each of them for each of its parameters.
#include "host/ExampleCommands.h"
#include "platform/Failure.h"
#include "support/ActionBench.h"

#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {
namespace {

/// A program or a page's code, cut into what stands in literals and what doesn't.
struct Cut {
  std::string outside;
  std::vector<std::string> literals; ///< with their escapes undone
};

Cut cut(std::string_view code, std::string_view quotes) {
  Cut result;
  for (std::size_t at = 0; at < code.size(); ++at) {
    const char quote = code[at];
    if (quotes.find(quote) == std::string_view::npos) {
      result.outside += quote;
      continue;
    }
    std::string literal;
    for (++at; at < code.size() && code[at] != quote; ++at) {
      if (code[at] == '\\')
        ++at;
      literal += code.substr(at, 1);
    }
    result.literals.push_back(std::move(literal));
  }
  return result;
}

bool holdsCode(std::string_view text) {
  return text.find("HOSTILE") != std::string_view::npos;
}

// True when the value has become code, of the program itself or of the job that it plants in the page.
bool hasBecomeCode(const std::string& program) {
  const Cut script = cut(program, "\"");
  for (const std::string& literal : script.literals) {
    const std::size_t job = literal.rfind("return [");
    if (job != std::string::npos && holdsCode(cut(literal.substr(job), "\"'`").outside))
      return true;
  }
  return holdsCode(script.outside);
}

// The words that a caller may write for a parameter so that the value gets as far as it can.
std::vector<std::string> formsOf(const std::string& value, intents::ValueKind kind) {
  const boost::json::value json(value);
  const auto text = [](boost::json::object object) { return boost::json::serialize(object); };
  if (kind != intents::ValueKind::entity)
    return {value, text({{value, json}})};
  return {value, text({{"id", json}, {"name", json}}), text({{"id", "org.chromium.chromium"}, {"name", json}}),
          text({{"targetContext", "chromium"}, {"fullID", json}}),
          text({{"targetContext", {{"id", json}, {"name", "x"}}}, {"fullID", "chromium:8"}})};
}

TEST(HostileValues, NeverBecomeCode) {
  testsupport::ActionBench bench;
  int accepted = 0;
  for (const std::string& name : bench.catalogue.names()) {
    const ParameterTexts example = exampleCommands(bench.catalogue, name).front().parameters;
    const auto action = bench.catalogue.make(name);
    for (const intents::ParameterBase* parameter : action->parameters()) {
      if (parameter->name() == "script" || parameter->name() == "jsCode") // which are code
        continue;
      for (const std::string value : {"a\"\nHOSTILE", "a\\\"\nHOSTILE", "a`'\\\nHOSTILE\\", "chromium:8\"HOSTILE",
                                      "http://a/\" & HOSTILE & \""}) {
        for (const std::string& text : formsOf(value, parameter->declaration().type.kind)) {
          ParameterTexts parameters = example;
          std::erase_if(parameters, [&](const auto& one) { return one.first == parameter->name(); });
          if (parameter->name() != "targetContext" && action->findParameter("targetContext"))
            parameters.emplace_back("targetContext", "chromium"); // the frontmost has no program to show
          parameters.emplace_back(parameter->name(), text);
          try {
            EXPECT_FALSE(hasBecomeCode(scriptText(bench.catalogue, name, parameters)))
                << name << " " << parameter->name() << " " << text;
            ++accepted;
          } catch (const platform::Failure&) { // refused, which is as good
          }
        }
      }
    }
  }
  EXPECT_GT(accepted, 100);
  EXPECT_TRUE(hasBecomeCode("set x to \"a\"\nHOSTILE")) << "the test can fail";
  EXPECT_TRUE(hasBecomeCode(R"(execute "return [\"a\", HOSTILE]")"));
}

} // namespace
} // namespace tabwright::host
