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

/// The same with a terminal of 80 columns as all three standard streams; yields what it was sent, lines ended by line
/// feeds alone. `typed` is what somebody types there, ahead of time.
[[nodiscard]] std::string runAtTerminal(const std::string& program, const std::vector<std::string>& arguments,
                                        const std::map<std::string, std::string>& environment,
                                        const std::string& typed = {});

/// The `tabwright` under test.
[[nodiscard]] std::string tabwrightPath();

} // namespace tabwright::testsupport
