#pragma once

#include <map>
#include <string>
#include <vector>

namespace tabwright::testsupport {

struct CommandOutcome {
  int exitCode = -1; ///< 128 + signal when one ended it
  std::string output;
  std::string errors;
};

/// Runs the `tabwright` under test with arguments, a standard input and changes to the environment (an empty value
/// takes a variable away), and waits for its end. Neither input nor output is a terminal.
[[nodiscard]] CommandOutcome runTabwright(const std::vector<std::string>& arguments, const std::string& input = {},
                                          const std::map<std::string, std::string>& environment = {});

/// The same of any program, found on the PATH when it is no path.
[[nodiscard]] CommandOutcome runProgram(const std::string& program, const std::vector<std::string>& arguments,
                                        const std::string& input,
                                        const std::map<std::string, std::string>& environment);

/// The `tabwright` under test.
[[nodiscard]] std::string tabwrightPath();

} // namespace tabwright::testsupport
