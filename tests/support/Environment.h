#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace tabwright::testsupport {

/// Sets variables of the environment, or takes them out of it, until this goes.
class Environment {
public:
  using Values = std::map<std::string, std::optional<std::string>>;

  explicit Environment(const Values& values) {
    for (const auto& [name, value] : values) {
      const char* former = std::getenv(name.c_str());
      former_[name] = former ? std::optional<std::string>(former) : std::nullopt;
      set(name, value);
    }
  }
  ~Environment() {
    for (const auto& [name, value] : former_)
      set(name, value);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

private:
  static void set(const std::string& name, const std::optional<std::string>& value) {
    value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
  }
  Values former_;
};

} // namespace tabwright::testsupport
