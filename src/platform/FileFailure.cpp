#include "platform/FileFailure.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace tabwright::platform {

FileFailure::FileFailure(std::string operation, std::filesystem::path path, int errorNumber)
    : operation_(std::move(operation)), path_(std::move(path)), errorNumber_(errorNumber) {}

std::string FileFailure::errorDescription() const {
  return "Couldn't " + operation_ + " “" + path_.string() + "”: " + std::generic_category().message(errorNumber_);
}

FailureIdentity FileFailure::identity() const {
  return {"FileFailure", operation_, errorNumber_, FailureClass::system};
}

bool isShortage(int errorNumber) {
  // Too many descriptors in this process, in the whole system, and no memory.
  return errorNumber == EMFILE || errorNumber == ENFILE || errorNumber == ENOMEM;
}

} // namespace tabwright::platform
