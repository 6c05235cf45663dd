#pragma once

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace tabwright::actions {

/// Keeps the items that a list action was asked for: all, the first, the last, or one at random. `Option` is an enum
/// with the cases `all`, `first`, `last` and `random`. An empty list stays empty.
template <class Item, class Option>
[[nodiscard]] std::vector<Item> selected(std::vector<Item> items, Option option) {
  if (items.empty() || option == Option::all)
    return items;
  if (option == Option::last)
    return {std::move(items.back())};
  if (option == Option::random) {
    std::random_device systemSource;
    std::ranges::shuffle(items, systemSource);
  }
  return {std::move(items.front())};
}

/// True for a tab or window of the kind that a list action was asked for. `Option` is an enum with the cases `any`,
/// `standard` and `incognito`.
template <class Item, class Option>
[[nodiscard]] bool hasPrivacy(const Item& item, Option option) {
  switch (option) {
  case Option::any:
    return true;
  case Option::standard:
    return !item.isPrivate;
  case Option::incognito:
    return item.isPrivate;
  }
  return false;
}

} // namespace tabwright::actions
