#include "support/ChromiumProcess.h"

#include "ConnectedHelper.h"
#include "devtools/Discovery.h"
#include "scripting/driver/RelayConnection.h"
#include "support/SourceFolder.h"

#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <string_view>
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
  if (debugging == Debugging::on && road() == Road::helper)
    installHelper();
  else if (debugging == Debugging::on)
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

ChromiumProcess::Road ChromiumProcess::road() {
  const char* name = std::getenv("TABWRIGHT_TEST_ROAD");
  return name != nullptr && std::string_view(name) == "helper" ? Road::helper : Road::port;
}

/// As a user's own profile is once the helper is installed in it, and the user has turned its switches on.
void ChromiumProcess::installHelper() const {
  namespace facts = connectedhelper;
  const std::filesystem::path programs = TABWRIGHT_PROGRAMS;
  const std::string id(facts::identity);
  const auto write = [&](const std::filesystem::path& path, const boost::json::value& content) {
    std::filesystem::create_directories((profileDirectory() / path).parent_path());
    std::ofstream(profileDirectory() / path) << boost::json::serialize(content);
  };
  write("External Extensions/" + id + ".json",
        {{"external_crx", (programs / facts::packageFile).string()}, {"external_version", facts::version}});
  write(fmt::format("NativeMessagingHosts/{}.json", facts::relayName),
        {{"name", facts::relayName},
         {"description", "Tabwright"},
         {"path", (programs / facts::relayProgram).string()},
         {"type", "stdio"},
         {"allowed_origins", boost::json::array{"chrome-extension://" + id + "/"}}});
  boost::json::object switches{{"incognito", true}, {"user_scripts_enabled", true}, {"newAllowFileAccess", true}};
  write("Default/Preferences", {{"extensions", {{"settings", {{id, switches}}}}}});
}

std::vector<pid_t> ChromiumProcess::pageProcesses() const {
  std::vector<pid_t> pages;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream in(entry.path() / "cmdline");
    const std::string words{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const bool isOurs = words.find(profileDirectory().string()) != std::string::npos;
    if (isOurs && words.find("--type=renderer") != std::string::npos &&
        words.find("--extension-process") == std::string::npos)
      pages.push_back(std::stoi(entry.path().filename()));
  }
  return pages;
}

bool ChromiumProcess::isReached() const {
  if (road() == Road::port)
    return devtools::Discovery().endpoint(profileDirectory(), process_, ::geteuid()).has_value();
  return !scripting::findRelays(find().front()).empty();
}

void ChromiumProcess::waitUntilReady(Debugging debugging) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (std::chrono::steady_clock::now() < deadline) {
    if (!find().empty() && (debugging == Debugging::off || isReached()))
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
