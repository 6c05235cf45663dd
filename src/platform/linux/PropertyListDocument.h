#pragma once

#include "platform/DefaultsValue.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// A property list whose root is a dictionary: the file form of the settings, after Apple's DTD "PLIST 1.0".
///
/// Entries that nobody sets are kept as they are, of whatever kind. A value type; not safe for use from several threads
/// at once.
///
///     auto document = PropertyListDocument::parse(text).value_or(PropertyListDocument());
///     document.set("c41d07ab", std::int64_t{3});
///     write(document.xml());
class PropertyListDocument {
public:
  /// The empty dictionary.
  PropertyListDocument();
  PropertyListDocument(const PropertyListDocument& other);
  PropertyListDocument& operator=(const PropertyListDocument& other);
  PropertyListDocument(PropertyListDocument&&) noexcept = default;
  PropertyListDocument& operator=(PropertyListDocument&&) noexcept = default;
  ~PropertyListDocument() = default;

  /// Reads the XML form; nothing when `data` is none, ends too early, has another root, or holds more than 1,000 arrays
  /// and dictionaries: the parser's library recurses into them, and a real one has three.
  [[nodiscard]] static std::optional<PropertyListDocument> parse(std::string_view data);

  /// The entry of a name; nothing when there is none. A `ForeignValue` for one of a kind that no setting has.
  [[nodiscard]] std::optional<DefaultsValue> find(const std::string& name) const;

  /// Sets an entry to the `storable` form of a value. A `ForeignValue` can't be set: std::invalid_argument. Replaces
  /// the entry, of whatever kind it was.
  void set(const std::string& name, const DefaultsValue& value);

  /// The value as it comes back after it was set: in its texts, what is no UTF-8 and the control characters that XML
  /// can't hold are replaced by U+FFFD.
  [[nodiscard]] static DefaultsValue storable(DefaultsValue value);

  /// The XML form, with header, a line per entry.
  [[nodiscard]] std::string xml() const;

private:
  struct Release {
    void operator()(void* node) const;
  };
  /// A node of the library with all below it. It copies deeply and is freed once.
  using Node = std::unique_ptr<void, Release>;
  explicit PropertyListDocument(Node root) : root_(std::move(root)) {}

  Node root_;
};

} // namespace tabwright::platform
