#pragma once

#include <cstring>
#include <memory_resource>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tabwright::html {

/// Memory that is given back all at once, for the many small parts of a document. Not for several threads at a time.
class Arena {
public:
  [[nodiscard]] std::string_view copy(std::string_view text) {
    if (text.empty())
      return {};
    char* characters = allocate(text.size());
    std::memcpy(characters, text.data(), text.size());
    return {characters, text.size()};
  }

  /// Room for `length` characters, not yet written.
  [[nodiscard]] char* allocate(std::size_t length) { return static_cast<char*>(memory_.allocate(length, 1)); }

  /// A copy of `items`; its destructor never runs.
  template <class Item>
  [[nodiscard]] const Item* copyAll(std::span<const Item> items) {
    static_assert(std::is_trivially_destructible_v<Item> && std::is_trivially_copyable_v<Item>);
    auto* room = static_cast<Item*>(memory_.allocate(items.size_bytes(), alignof(Item)));
    std::uninitialized_copy(items.begin(), items.end(), room);
    return room;
  }

  template <class Item>
  [[nodiscard]] Item& make(Item item) {
    static_assert(std::is_trivially_destructible_v<Item>);
    return *new (memory_.allocate(sizeof(Item), alignof(Item))) Item(std::move(item));
  }

private:
  std::pmr::monotonic_buffer_resource memory_;
};

} // namespace tabwright::html
