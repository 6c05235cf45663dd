#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {

/// An open file descriptor that is closed when this goes; -1 is none.
class FileDescriptor {
public:
  FileDescriptor() = default;
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

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }
  /// The bytes from here to the end. Nothing, with errno set, when they can't be read; EFBIG for more than `most`.
  [[nodiscard]] std::optional<std::string> readAll(std::size_t most = std::string::npos) const;

private:
  int number_ = -1;
};

} // namespace tabwright::platform
