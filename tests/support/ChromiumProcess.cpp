#include "support/ChromiumProcess.h"

#include "devtools/Discovery.h"
#include "support/SourceFolder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tabwright::support {

namespace {

[[noreturn]] void become(const std::vector<std::string>& arguments) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = ::open("/dev/null", O_RDWR);
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
  std::vector<char*> pointers;
  for (const std::string& argument : arguments)
    pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  ::execv(pointers[0], pointers.data());
  ::_exit(127);
}

} // namespace

ChromiumProcess::ChromiumProcess(Debugging debugging) {
  std::vector<std::string> arguments{"/usr/bin/chromium",
                                     "--headless=new",
                                     "--no-sandbox",
                                     "--disable-gpu",
                                     "--disable-quic",
                                     "--no-first-run",
                                     "--disable-background-networking",
                                     "--disable-component-update",
                                     "--disable-sync",
                                     "--user-data-dir=" + profileDirectory().string()};
  if (debugging == Debugging::on)
    arguments.emplace_back("--remote-debugging-port=0");
  arguments.emplace_back("about:blank");

  process_ = ::fork();
  if (process_ == 0)
    become(arguments);
  try {
    if (process_ < 0)
      throw std::runtime_error("fork failed");
    waitUntilReady(debugging);
  } catch (...) {
    kill();
    throw;
  }
}

ChromiumProcess::~ChromiumProcess() {
  kill();
}

std::vector<platform::RunningBrowser> ChromiumProcess::find() const {
  std::vector<platform::RunningBrowser> browsers = platform::RunningBrowsers().find(*platform::findBrowser("chromium"));
  std::erase_if(browsers, [this](const platform::RunningBrowser& browser) { return browser.process != process_; });
  return browsers;
}

void ChromiumProcess::waitUntilReady(Debugging debugging) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (std::chrono::steady_clock::now() < deadline) {
    const bool isSeen = !find().empty();
    if (isSeen && (debugging == Debugging::off ||
                   devtools::Discovery().endpoint(profileDirectory(), process_, ::geteuid()).has_value()))
      return;
    if (::waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = 0;
      throw std::runtime_error("Chromium ended while starting");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  throw std::runtime_error("Chromium does not start");
}

void ChromiumProcess::kill() {
  if (process_ <= 0)
    return;
  ::kill(-process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = 0;
}

std::filesystem::path helperDirectory() {
  return testsupport::sourceFolder() / "resources" / "helper";
}

} // namespace tabwright::support
