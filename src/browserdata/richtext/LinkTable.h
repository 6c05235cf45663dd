#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The links of a document, by number from 1.
class LinkTable {
public:
  /// Fields that one link gets at most, one a paragraph: a long address around a whole page would else be repeated
  /// without end. Paragraphs beyond stand without.
  static constexpr int maximumFields = 32;

  /// The number of a new link; 0 when the address is none that a field takes (see `fieldAddress`).
  [[nodiscard]] std::uint32_t add(std::string_view address);

  /// Opens a field of the link, up to where its text begins, and tells whether it did. `closeField` ends it.
  [[nodiscard]] bool openField(std::string& out, std::uint32_t link);
  /// Only after an `openField` that has said true.
  static void closeField(std::string& out) { out += "}}"; }

private:
  struct Link {
    /// As a field holds it, escaped and checked.
    std::string address;
    int fields = 0;
  };
  std::vector<Link> links_;
};

} // namespace tabwright::browserdata
