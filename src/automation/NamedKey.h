#pragma once

#include "intents/EntityDefinition.h"
#include "intents/OptionsProvider.h"
#include "platform/Keyboard.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::automation {

/// A key that is chosen by its name. Its number is the virtual key code that it has on a Mac, whatever the layout.
struct NamedKey {
  std::int64_t id = 0; ///< the same as `keycode`
  /// The Mac's virtual key code, 0 to 127.
  std::int64_t keycode = 0;
  std::string name; ///< "Page Up"

  /// The key of a name or of a key code. Blanks and the case of letters don't count: "pageup". Nothing for others.
  [[nodiscard]] static std::optional<NamedKey> find(std::string_view nameOrCode);
  /// The keys of these ids, in the table's order; an id that no key has gives nothing.
  [[nodiscard]] static std::vector<NamedKey> entities(std::span<const std::int64_t> ids);

  /// The key of a PC's keyboard that does the same. Throws `std::bad_optional_access` for a key that isn't in the
  /// table.
  [[nodiscard]] platform::Key key() const;

  [[nodiscard]] static const intents::EntityDefinition<NamedKey>& definition();

  friend bool operator==(const NamedKey&, const NamedKey&) = default;
};

/// One key, in one row.
struct NamedKeyRow {
  std::string_view name;
  std::int64_t keycode = 0;
  std::string_view otherName{}; ///< for names that a keyboard hasn't the characters for; empty for most
};

/// Keys that are offered together.
struct NamedKeySection {
  std::string_view label;
  std::span<const NamedKeyRow> items;
};

/// All named keys, as they are offered.
[[nodiscard]] std::span<const NamedKeySection> namedKeySections();

/// The choices of a parameter that takes a key: a section per section of the table, and no default.
class NamedKeyProvider final : public intents::OptionsProvider {
public:
  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override { return std::nullopt; }
};

[[nodiscard]] const NamedKeyProvider& namedKeyProvider();

} // namespace tabwright::automation

/// A named key as a value is an object with its `id`, its name ("Page Up"), or its key code (116).
template <>
struct tabwright::intents::ValueTraits<tabwright::automation::NamedKey> {
  static ValueType type() {
    return {.kind = ValueKind::entity, .entity = &automation::NamedKey::definition().declaration()};
  }
  static boost::json::value toJson(const automation::NamedKey& value) {
    return automation::NamedKey::definition().toJson(value);
  }
  static automation::NamedKey fromJson(const boost::json::value& json);
  static automation::NamedKey fromText(std::string_view text);
};
