// The kernel's tables name the sockets that listen at a port by inode, and the process file system names the sockets of
// a process in the same way: so a port that another process has taken is found out.
#include "platform/linux/ListeningSocket.h"

#include "platform/FileFailure.h"

#include <cerrno>
#include <charconv>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <system_error>

namespace tabwright::platform {

namespace fs = std::filesystem;

namespace {

/// True when a listener at this address, written as the kernel does, would get a connection to 127.0.0.1.
bool takesLoopback(const std::string& address) {
  return address == "0100007F" || address == "00000000" || // 127.0.0.1, any
         address == "00000000000000000000000000000000" ||  // any, of both kinds
         address == "0000000000000000FFFF00000100007F";    // 127.0.0.1 mapped
}

void collectInodes(const fs::path& table, std::uint16_t port, std::set<std::string>& inodes) {
  std::ifstream in(table);
  if (!in.is_open() && isShortage(errno))
    throw FileFailure("read", table, errno);
  std::string line;
  std::getline(in, line); // the heading
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    // Fields by their order in proc(5); blanks part them.
    std::string slot, local, remote, state, queues, timer, retransmits, owner, timeout, inode;
    if (!(fields >> slot >> local >> remote >> state >> queues >> timer >> retransmits >> owner >> timeout >> inode))
      continue;
    constexpr const char* listening = "0A";
    const std::size_t colon = local.find(':');
    if (state != listening || colon == std::string::npos || !takesLoopback(local.substr(0, colon)))
      continue;
    unsigned number = 0;
    std::from_chars(local.data() + colon + 1, local.data() + local.size(), number, 16);
    if (number == port)
      inodes.insert(inode);
  }
}

} // namespace

ListenerOwner ownerOfListener(std::uint16_t port, pid_t process, const fs::path& processes) {
  std::set<std::string> inodes;
  collectInodes(processes / "net" / "tcp", port, inodes);
  collectInodes(processes / "net" / "tcp6", port, inodes);
  if (inodes.empty())
    return ListenerOwner::none;

  std::error_code error;
  for (fs::directory_iterator entry(processes / std::to_string(process) / "fd", error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable; // a descriptor that was closed meanwhile
    const std::string target = fs::read_symlink(entry->path(), unreadable).string();
    constexpr std::string_view socket = "socket:[";
    if (target.starts_with(socket))
      inodes.erase(target.substr(socket.size(), target.size() - socket.size() - 1));
    if (inodes.empty())
      // None is left that somebody else could own.
      return ListenerOwner::thisProcess;
  }
  // The descriptors of another user's process can't be listed either, which is no want of ours.
  if (isShortage(error.value()))
    throw FileFailure("read", processes / std::to_string(process) / "fd", error.value());
  return ListenerOwner::another;
}

} // namespace tabwright::platform
