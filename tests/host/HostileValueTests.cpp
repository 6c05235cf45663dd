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

// Whether the value has become code, of the program itself or of the job that it plants in the page.
bool hasBecomeCode(const std::string& program) {
  const Cut script = cut(program, "\"");
  for (const std::string& literal : script.literals) {
    const std::size_t job = literal.rfind("return [");
    if (job != std::string::npos && holdsCode(cut(literal.substr(job), "\"'`").outside))
      return true;
  }
  return holdsCode(script.outside);
}

TEST(HostileValues, NeverBecomeCode) {
  testsupport::ActionBench bench;
  int accepted = 0;
  for (const std::string& name : bench.catalogue.names()) {
    for (const ExampleCommand& example : exampleCommands(bench.catalogue, name)) {
      for (const intents::ParameterBase* parameter : bench.catalogue.make(name)->parameters()) {
        if (parameter->name() == "script" || parameter->name() == "jsCode") // which are code
          continue;
        for (const std::string value : {"a\"\nHOSTILE", "a\\\"\nHOSTILE", "a\\\nHOSTILE", "a`'\nHOSTILE", "HOSTILE\"",
                                        "chromium:8\"HOSTILE", "http://a/\" & HOSTILE & \""}) {
          const boost::json::value json(value);
          for (const std::string& text :
               {value, boost::json::serialize(json),
                boost::json::serialize(boost::json::object{{"id", json}, {"name", json}}),
                boost::json::serialize(boost::json::object{{"id", "org.chromium.chromium"}, {"name", json}}),
                boost::json::serialize(boost::json::object{{"targetContext", "chromium"}, {"fullID", json}}),
                boost::json::serialize(
                    boost::json::object{{"targetContext", {{"id", json}, {"name", "x"}}}, {"fullID", "chromium:8"}})}) {
            ParameterTexts parameters = example.parameters;
            std::erase_if(parameters, [&](const auto& one) { return one.first == parameter->name(); });
            if (std::ranges::find(parameters, "targetContext", &ParameterTexts::value_type::first) ==
                    parameters.end() &&
                parameter->name() != "targetContext" && bench.catalogue.make(name)->findParameter("targetContext"))
              parameters.emplace_back("targetContext", "chromium");
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
  }
  EXPECT_GT(accepted, 500);
  EXPECT_TRUE(hasBecomeCode("set x to \"a\"\nHOSTILE")) << "the test can fail";
  EXPECT_TRUE(hasBecomeCode(R"(execute "return [\"a\", HOSTILE]")"));
}

} // namespace
} // namespace tabwright::host
