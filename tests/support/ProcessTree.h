#pragma once

#include "support/ScratchFolder.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::support {

/// A process file system made up by a test, in a temporary directory that lives as long as this object.
class ProcessTree {
public:
  [[nodiscard]] const std::filesystem::path& root() const { return folder_.path(); }

  /// A process with this executable, these arguments and environment, and start time in ticks after boot.
  void addProcess(pid_t process, const std::string& executable, const std::vector<std::string>& arguments,
                  unsigned long startTime, const std::vector<std::string>& environment = {});
  /// An open socket among the process' descriptors.
  void addSocket(pid_t process, const std::string& inode);
  /// A listening socket in net/TABLE; the address is written as the kernel does, such as "0100007F" for 127.0.0.1.
  void listen(const std::string& table, const std::string& address, unsigned port, const std::string& inode);
  /// A connected socket there.
  void connect(const std::string& table, const std::string& address, unsigned port, const std::string& inode);

private:
  void addLine(const std::string& table, const std::string& address, unsigned port, const std::string& state,
               const std::string& inode);
  testsupport::ScratchFolder folder_;
};

} // namespace tabwright::support
