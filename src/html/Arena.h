#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tabwright::html {

/// Memory that is given back all at once, for the many small parts of a document. Not for several threads at a time.
///
/// It grows by blocks that the allocator of the C library keeps for the next document, rather than by ever larger ones,
/// which come fresh from the system each time: that costs more than filling them.
class Arena {
public:
  /// Room for `length` bytes of anything, not yet written.
  [[nodiscard]] void* allocate(std::size_t length) {
    length = (length + alignment - 1) / alignment * alignment;
    if (length > left_) {
      // A large piece gets a block of its own, so that what is left of the last block isn't wasted.
      if (length > blockLength / 4)
        return blocks_.emplace_back(new std::byte[length]).get();
      next_ = blocks_.emplace_back(new std::byte[blockLength]).get();
      left_ = blockLength;
    }
    std::byte* const room = next_;
    next_ += length;
    left_ -= length;
    return room;
  }

  /// A copy that lives as long as the arena. An empty text takes no room.
  [[nodiscard]] std::string_view copy(std::string_view text) {
    if (text.empty())
      return {};
    return {static_cast<char*>(std::memcpy(allocate(text.size()), text.data(), text.size())), text.size()};
  }

  /// A copy of `items`; their destructors never run.
  template <class Item>
  [[nodiscard]] const Item* copyAll(std::span<const Item> items) {
    static_assert(std::is_trivially_copyable_v<Item> && alignof(Item) <= alignment);
    auto* const room = static_cast<Item*>(allocate(items.size_bytes()));
    std::uninitialized_copy(items.begin(), items.end(), room);
    return room;
  }

  template <class Item>
  [[nodiscard]] Item& make(Item item) {
    static_assert(std::is_trivially_destructible_v<Item> && alignof(Item) <= alignment);
    return *new (allocate(sizeof(Item))) Item(std::move(item));
  }

private:
  /// Of every piece, whatever is put there.
  static constexpr std::size_t alignment = alignof(std::max_align_t);
  /// Of the usual block, in bytes.
  static constexpr std::size_t blockLength = 64UL * 1024;

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  /// The free rest of the last usual block: where it begins, and how many bytes it has.
  std::byte* next_ = nullptr;
  std::size_t left_ = 0;
};

} // namespace tabwright::html
