#pragma once

#include "platform/linux/FileDescriptor.h"

#include <string_view>

namespace tabwright::updates {

/// Checks an Ed25519 signature (RFC 8032) over all bytes of a file. `signature` (of 64 bytes) and `key`, the public one
/// (of 32), are in base64. Throws `UpdateFault::unusableKey` for a key that is none, `unsignedArchive` for an empty
/// signature, `wronglySigned` for any that isn't this key's over these bytes; `FileFailure` where the file can't be
/// read.
void requireSignature(const platform::FileDescriptor& file, std::string_view signature, std::string_view key);

/// True for a public key in base64.
[[nodiscard]] bool isPublicKey(std::string_view key);

} // namespace tabwright::updates
