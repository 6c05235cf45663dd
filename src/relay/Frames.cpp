#include "relay/Frames.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tabwright::relay {

std::array<char, headSize> frameHead(std::uint32_t length) {
  std::array<char, headSize> head{};
  std::memcpy(head.data(), &length, head.size());
  return head;
}

bool HeadReader::take(std::string_view& bytes) {
  const std::size_t count = std::min(bytes.size(), head_.size() - filled_);
  std::copy_n(bytes.begin(), count, head_.begin() + static_cast<std::ptrdiff_t>(filled_));
  filled_ += count;
  bytes.remove_prefix(count);
  return filled_ == head_.size();
}

std::size_t HeadReader::finish() {
  std::uint32_t length = 0;
  std::memcpy(&length, head_.data(), head_.size());
  filled_ = 0;
  if (length > longestFrame)
    throw Malformed("a frame of " + std::to_string(length) + " bytes is announced, and the longest has " +
                    std::to_string(longestFrame));
  return length;
}

void FrameReader::feed(std::string_view bytes, const std::function<void(std::string)>& take) {
  while (!bytes.empty()) {
    if (!isInContent_) {
      if (!head_.take(bytes))
        return;
      length_ = head_.finish();
      content_.reserve(std::min(length_, longestFrameForBrowser)); // what is announced may never come
      isInContent_ = true;
    }
    const std::size_t count = std::min(bytes.size(), length_ - content_.size());
    content_.append(bytes.substr(0, count));
    bytes.remove_prefix(count);
    if (content_.size() == length_) {
      isInContent_ = false;
      take(std::exchange(content_, {}));
    }
  }
}

} // namespace tabwright::relay
