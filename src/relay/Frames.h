#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

/// Frames, which both the browser and the clients speak in: four bytes with the content's length, in the machine's byte
/// order, and then the content, JSON in UTF-8.
namespace tabwright::relay {

/// Bytes of content. Whoever announces more is not speaking in frames, or means harm.
inline constexpr std::size_t longestFrame = std::size_t{256} << 20;
/// The browser takes no longer content than this, and ends the relay for it.
inline constexpr std::size_t longestFrameForBrowser = std::size_t{1} << 20;

/// Something was received that was not agreed. The sentence says how, without naming the sender and without a full
/// stop.
struct Malformed final : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline constexpr std::size_t headSize = 4;
/// The four bytes before a content of this length.
[[nodiscard]] std::array<char, headSize> frameHead(std::uint32_t length);

/// The length that a frame begins with, as its bytes come in, however they are cut.
class HeadReader {
public:
  /// Takes bytes from the front of `bytes`, at most as many as are missing. True once all are there.
  [[nodiscard]] bool take(std::string_view& bytes);
  /// Begins with the next head. The length is as announced. Throws Malformed for one beyond longestFrame. Call when
  /// `take` was true.
  [[nodiscard]] std::size_t finish();
  [[nodiscard]] bool hasBegun() const noexcept { return filled_ > 0; }

private:
  std::array<char, headSize> head_{};
  std::size_t filled_ = 0;
};

/// Puts frames together from the bytes of a stream, however they are cut.
class FrameReader {
public:
  /// Takes the next bytes of the stream and calls `take` with the content of each frame that they complete, in order.
  /// Throws Malformed for a frame longer than longestFrame; then the stream can't be read any further.
  void feed(std::string_view bytes, const std::function<void(std::string)>& take);

  /// True when a stream that ends here ends within a frame.
  [[nodiscard]] bool isWithinFrame() const noexcept { return isInContent_ || head_.hasBegun(); }

private:
  HeadReader head_;
  std::string content_;
  std::size_t length_ = 0;
  bool isInContent_ = false;
};

} // namespace tabwright::relay
