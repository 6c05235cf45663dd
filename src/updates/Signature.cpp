// Ed25519 goes through its message twice, so all of it has to be there at once: the file is mapped.
#include "updates/Signature.h"

#include "platform/FileFailure.h"
#include "updates/UpdateFault.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <openssl/evp.h>
#include <optional>
#include <sys/mman.h>
#include <sys/stat.h>
#include <vector>

namespace tabwright::updates {
namespace {

constexpr std::size_t keyLength = 32;
constexpr std::size_t signatureLength = 64;

using Bytes = std::vector<unsigned char>;

/// Exactly `length` bytes in base64 with its padding, and nothing around it.
std::optional<Bytes> decoded(std::string_view text, std::size_t length) {
  const std::size_t padding = (3 - length % 3) % 3;
  if (text.size() != (length + padding) / 3 * 4 || !text.ends_with(std::string_view("==").substr(0, padding)))
    return std::nullopt;
  if (text.find_first_of(" \t\r\n") != std::string_view::npos) // which the decoder passes over
    return std::nullopt;
  Bytes bytes(length + padding);
  const int count =
      EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
  if (count < 0 || static_cast<std::size_t>(count) != bytes.size())
    return std::nullopt;
  bytes.resize(length);
  return bytes;
}

class MappedBytes {
public:
  explicit MappedBytes(const platform::FileDescriptor& file) {
    struct stat facts{};
    if (::fstat(file.number(), &facts) != 0)
      throw platform::FileFailure("read", "the download", errno);
    length_ = static_cast<std::size_t>(facts.st_size);
    if (length_ == 0)
      return;
    start_ = ::mmap(nullptr, length_, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (start_ == MAP_FAILED)
      throw platform::FileFailure("read", "the download", errno);
  }
  ~MappedBytes() {
    if (length_ != 0)
      ::munmap(start_, length_);
  }
  MappedBytes(const MappedBytes&) = delete;
  MappedBytes& operator=(const MappedBytes&) = delete;

  [[nodiscard]] const unsigned char* data() const { return static_cast<const unsigned char*>(start_); }
  [[nodiscard]] std::size_t size() const { return length_; }

private:
  void* start_ = nullptr;
  std::size_t length_ = 0;
};

} // namespace

bool isPublicKey(std::string_view key) {
  return decoded(key, keyLength).has_value();
}

void requireSignature(const platform::FileDescriptor& file, std::string_view signature, std::string_view key) {
  const std::optional<Bytes> keyBytes = decoded(key, keyLength);
  if (!keyBytes)
    throw platform::failure(UpdateFault::unusableKey);
  if (signature.empty())
    throw platform::failure(UpdateFault::unsignedArchive);
  const std::optional<Bytes> signatureBytes = decoded(signature, signatureLength);
  if (!signatureBytes)
    throw platform::failure(UpdateFault::wronglySigned);

  const MappedBytes message(file);
  const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> publicKey(
      EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, keyBytes->data(), keyBytes->size()), EVP_PKEY_free);
  const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  if (!publicKey || !context || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, publicKey.get()) != 1)
    throw platform::failure(UpdateFault::unusableKey);
  if (EVP_DigestVerify(context.get(), signatureBytes->data(), signatureBytes->size(), message.data(), message.size()) !=
      1)
    throw platform::failure(UpdateFault::wronglySigned);
}

} // namespace tabwright::updates
