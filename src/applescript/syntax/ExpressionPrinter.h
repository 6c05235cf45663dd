#pragma once

#include "applescript/syntax/Prepositions.h"
#include "applescript/syntax/Tree.h"

#include <string>
#include <string_view>

namespace tabwright::applescript {

/// Writes expressions of one tree as source text that parses to an equal tree in the same place of a script. Words are
/// those of dictionaries, names as first spelled; numbers and texts are written by their values.
///
/// Long expressions stay on one line but where the source continued one (`¬`); `depth` says how far those lines are
/// indented. Recurses as deep as the tree is high, which the parser bounds.
class ExpressionPrinter {
public:
  /// `tree` must outlive the printer.
  explicit ExpressionPrinter(const SyntaxTree& tree) : tree_(tree) {}

  /// One of the tree's own expressions: places in the source are looked up by its range.
  [[nodiscard]] std::string print(const Expression& expression) const;
  /// A name, in bars where a dictionary of the tree or the language has the word, or where it is no identifier.
  [[nodiscard]] std::string name(std::string_view name) const;
  /// A record's or property's label: the dictionary's words for one with a code, else a name.
  [[nodiscard]] std::string label(const Label& label) const;
  /// A name, but that of a command of the language without bars: `on quit`.
  [[nodiscard]] std::string handlerName(std::string_view name) const;
  /// ` from a given b:c`: labelled arguments or parameters, each written by `print`. Prepositions behind the first
  /// `given` become labels too, since nothing but labels may follow it.
  template <class Labelled, class Print>
  [[nodiscard]] std::string labelled(const Labelled& rows, Print print) const {
    std::string text;
    bool isGiven = false;
    for (const auto& [label, row] : rows) {
      const bool isPlain = isPreposition(label) && !isGiven;
      text += (isPlain ? " " + label + " " : (isGiven ? ", " : " given ") + name(label) + ":") + print(row);
      isGiven = !isPlain;
    }
    return text;
  }
  /// A text in quotes, with escapes; line feeds stay as they are.
  [[nodiscard]] static std::string text(std::string_view value);

  std::size_t depth = 0; ///< of the line that is being written, in tabs

private:
  /// A reference in two pieces: what may still take a `'s` behind it, and ` of …`.
  struct Parts {
    std::string head;
    std::string rest;
  };
  /// Any expression in two pieces; one that is no reference is all head.
  [[nodiscard]] Parts parts(const Expression& expression) const;
  /// A member with its container by the joint that was written. A null container leaves the member alone.
  [[nodiscard]] Parts joined(std::string member, const ExpressionPointer& container, Joint joint) const;
  [[nodiscard]] Parts element(const ElementAccess& element) const;
  /// An element without its container and test: `tab 3`, `every tab`, `first window`.
  [[nodiscard]] std::string elementWords(const ElementAccess& element) const;
  /// The plural in the first dictionary of the tree that has one; else the singular.
  [[nodiscard]] std::string_view pluralOf(const ClassName& name) const;
  [[nodiscard]] Parts insertionPoint(const InsertionPoint& point) const;
  [[nodiscard]] Parts call(const HandlerCall& call) const;
  [[nodiscard]] Parts message(const ObjectiveCMessage& message) const;
  [[nodiscard]] std::string literal(const Literal& literal) const;
  [[nodiscard]] std::string unary(const Unary& unary) const;
  [[nodiscard]] std::string binary(const Binary& binary) const;
  [[nodiscard]] std::string command(const Command& command) const;
  [[nodiscard]] std::string list(const ListLiteral& list) const;
  [[nodiscard]] std::string record(const RecordLiteral& record) const;
  /// A continued line end where the source has one between two places, else what stands there otherwise.
  [[nodiscard]] std::string breakOr(std::string_view otherwise, std::size_t from, std::size_t to) const;

  const SyntaxTree& tree_;
};

} // namespace tabwright::applescript
