// Five bits make a character. The time's 48 bits fill ten characters with two leading zero bits, the randomness
// sixteen.
#include "engine/ULID.h"

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tabwright::engine {
namespace {

constexpr std::string_view alphabet = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";

} // namespace

std::string ulid(std::chrono::milliseconds sinceUnixEpoch, const std::array<std::uint8_t, 10>& randomness) {
  std::string text(26, '0');
  auto time = static_cast<std::uint64_t>(sinceUnixEpoch.count()) & ((std::uint64_t{1} << 48) - 1);
  for (std::size_t index = 10; index-- > 0; time >>= 5)
    text[index] = alphabet[time & 31];
  for (std::size_t index = 0; index < 16; ++index) {
    const std::size_t bit = index * 5;
    const std::size_t byte = bit / 8;
    // Sixteen characters of five bits are the 80 bits exactly, so the last window ends with the last byte.
    const unsigned next = byte + 1 < randomness.size() ? randomness[byte + 1] : 0u;
    const unsigned window = static_cast<unsigned>(randomness[byte]) << 8 | next;
    text[10 + index] = alphabet[window >> (11 - bit % 8) & 31];
  }
  return text;
}

std::string freshULID() {
  std::array<std::uint8_t, 10> randomness{};
  if (getentropy(randomness.data(), randomness.size()) != 0)
    throw std::system_error(errno, std::generic_category(), "no random numbers for a ULID");
  return ulid(std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch()),
              randomness);
}

} // namespace tabwright::engine
