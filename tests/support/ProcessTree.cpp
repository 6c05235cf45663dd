#include "support/ProcessTree.h"

#include <fmt/core.h>

#include <fstream>

namespace tabwright::support {

namespace fs = std::filesystem;

namespace {

void writeNullTerminated(const fs::path& file, const std::vector<std::string>& texts) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string& text : texts)
    out.write(text.c_str(), static_cast<std::streamsize>(text.size() + 1));
}

} // namespace

void ProcessTree::addProcess(pid_t process, const std::string& executable, const std::vector<std::string>& arguments,
                             unsigned long startTime, const std::vector<std::string>& environment) {
  const fs::path directory = root() / std::to_string(process);
  fs::create_directories(directory);
  fs::create_symlink(executable, directory / "exe");
  fs::create_symlink(root(), directory / "cwd");
  writeNullTerminated(directory / "cmdline", arguments);
  writeNullTerminated(directory / "environ", environment);
  // The command's name may hold anything; behind it the start time is the twentieth field.
  std::ofstream(directory / "stat") << fmt::format(
      "{} (a) b ) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 {} 20 21\n", process, startTime);
}

void ProcessTree::addSocket(pid_t process, const std::string& inode) {
  const fs::path directory = root() / std::to_string(process) / "fd";
  fs::create_directories(directory);
  fs::create_symlink("socket:[" + inode + "]", directory / inode);
}

void ProcessTree::listen(const std::string& table, const std::string& address, unsigned port,
                         const std::string& inode) {
  addLine(table, address, port, "0A", inode);
}

void ProcessTree::connect(const std::string& table, const std::string& address, unsigned port,
                          const std::string& inode) {
  addLine(table, address, port, "01", inode);
}

void ProcessTree::addLine(const std::string& table, const std::string& address, unsigned port, const std::string& state,
                          const std::string& inode) {
  const fs::path file = root() / "net" / table;
  fs::create_directories(file.parent_path());
  const bool isNew = !fs::exists(file);
  std::ofstream out(file, std::ios::app);
  if (isNew)
    out << "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n";
  out << fmt::format(
      "   0: {}:{:04X} 00000000:0000 {} 00000000:00000000 00:00000000 00000000  1000        0 {} 1 0 100\n", address,
      port, state, inode);
}

} // namespace tabwright::support
