#pragma once

#include "platform/DesktopFault.h"
#include "platform/linux/AtspiAccessibility.h"
#include "platform/linux/X11WindowSystem.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tabwright::platform {

/// Looks again and again until the condition holds; a failed expectation when it doesn't within 20 seconds.
inline bool eventually(const std::function<bool()>& isSo) {
  for (int attempt = 0; attempt < 1000; ++attempt) {
    if (isSo())
      return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ADD_FAILURE() << "it never came so";
  return false;
}

/// The fault of a call; a failed expectation where there is none.
inline DesktopFault faultOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const DesktopFailure& failure) {
    return failure.kind();
  }
  ADD_FAILURE() << "no DesktopFailure was thrown";
  return DesktopFault::stopped;
}

/// A program that ends with this object.
class Program {
public:
  explicit Program(const std::vector<std::string>& command) {
    std::vector<char*> words;
    for (const std::string& word : command)
      words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
      // Toolkits and browsers grumble about what a bare desktop lacks.
      dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
      execvp(words[0], words.data());
      _exit(127);
    }
  }
  ~Program() { kill(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  void kill() {
    if (pid_ == 0)
      return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
  }

private:
  pid_t pid_ = 0;
};

/// The desktop that the test program was started on, and a text editor on it.
class DesktopTest : public testing::Test {
protected:
  static ClientWindow windowOf(WindowSystem& system, const Program& program) {
    ClientWindow found;
    eventually([&] {
      for (const ClientWindow& window : system.windows()) {
        if (window.pid == program.pid())
          found = window;
      }
      return found.id != 0;
    });
    return found;
  }

  AccessibleElement applicationOf(const Program& program) {
    std::optional<AccessibleElement> root;
    eventually([&] { return (root = accessibility.findApplication(program.pid(), {})).has_value(); });
    return root.value_or(AccessibleElement());
  }

  /// Goes down by names, blanks at their ends left out; an element without a path when there is none.
  AccessibleElement find(AccessibleElement element, std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names)
      element = childWhere(element, [&](const AccessibleFacts& facts) {
        std::string told = facts.name.value_or("");
        told.erase(told.find_last_not_of(' ') + 1);
        return told == name;
      });
    return element;
  }

  /// The first element of that role, level by level.
  AccessibleElement findRole(const AccessibleElement& root, AccessibleRole role) {
    std::vector<AccessibleElement> level{root};
    while (!level.empty()) {
      const auto facts = accessibility.read(level, {.role = true, .children = true}, {});
      std::vector<AccessibleElement> below;
      for (std::size_t each = 0; each < level.size(); ++each) {
        if (facts[each].role == role)
          return level[each];
        const auto children = facts[each].children.value_or(std::vector<AccessibleElement>{});
        below.insert(below.end(), children.begin(), children.end());
      }
      level = std::move(below);
    }
    return {};
  }

  AccessibleElement childWhere(const AccessibleElement& parent,
                               const std::function<bool(const AccessibleFacts&)>& isMeant) {
    if (parent.path.empty())
      return {};
    const auto children = accessibility.read({&parent, 1}, {.children = true}, {})[0].children;
    const auto facts = accessibility.read(*children, {.name = true, .role = true}, {});
    for (std::size_t each = 0; each < facts.size(); ++each) {
      if (isMeant(facts[each]))
        return children->at(each);
    }
    return {};
  }

  AccessibleFacts factsOf(const AccessibleElement& element, const AccessibleParts& parts) {
    return accessibility.read({&element, 1}, parts, {})[0];
  }

  X11WindowSystem windows;
  AtspiAccessibility accessibility;
};

} // namespace tabwright::platform
