#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {

/// An open file descriptor that is closed when this goes; -1 is none. It moves and isn't copied; an errno value
/// survives its making, so a failed call can be wrapped before it is looked at:
///
///     const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
///     if (!file.isOpen())
///       throw FileFailure("read", path, errno);
class FileDescriptor {
public:
  /// Holds none.
  FileDescriptor() = default;
  /// Takes over a descriptor, or the -1 of a call that failed.
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    FileDescriptor closing(std::exchange(number_, std::exchange(other.number_, -1)));
    return *this;
  }
  ~FileDescriptor() {
    if (number_ >= 0)
      close(number_);
  }

  /// Still this object's to close; -1 for none.
  [[nodiscard]] int number() const noexcept { return number_; }
  /// True when it holds one, whatever became of the file.
  [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }
  /// The bytes from here to the end. Nothing, with errno set, when they can't be read; EFBIG for more than `most`. The
  /// place in the file moves on. `most` is in bytes.
  [[nodiscard]] std::optional<std::string> readAll(std::size_t most = std::string::npos) const;

private:
  int number_ = -1;
};

} // namespace tabwright::platform
