#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace tabwright::app {

/// Lays out the help of the program and of its commands: no line is longer than 80 cells, but for single words. CLI11
/// asks for each part; terms stand in one column, and their meanings in another where there is room.
class HelpFormatter final : public CLI::Formatter {
public:
  std::string make_description(const CLI::App* app) const override;
  std::string make_option(const CLI::Option* option, bool isPositional) const override;
  std::string make_subcommand(const CLI::App* command) const override;
  std::string make_footer(const CLI::App* app) const override;
};

} // namespace tabwright::app
