#pragma once

#include "applescript/syntax/Prepositions.h"
#include "applescript/syntax/Tree.h"

#include <string>
#include <string_view>

namespace tabwright::applescript {

/// Writes expressions of one tree as source text.
class ExpressionPrinter {
public:
  /// `tree` must outlive the printer.
  explicit ExpressionPrinter(const SyntaxTree& tree) : tree_(tree) {}

  [[nodiscard]] std::string print(const Expression& expression) const;
  /// A name, in bars where a dictionary or the language has the word.
  [[nodiscard]] std::string name(std::string_view name) const;
  [[nodiscard]] std::string label(const Label& label) const;
  [[nodiscard]] std::string handlerName(std::string_view name) const;
  /// ` from a given b:c`: labelled arguments or parameters, each written by `print`.
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
  [[nodiscard]] static std::string text(std::string_view value);

  std::size_t depth = 0; ///< of the line that is being written, in tabs

private:
  /// A reference in two pieces: what may still take a `'s` behind it, and ` of …`.
  struct Parts {
    std::string head;
    std::string rest;
  };
  [[nodiscard]] Parts parts(const Expression& expression) const;
  [[nodiscard]] Parts joined(std::string member, const ExpressionPointer& container, Joint joint) const;
  [[nodiscard]] Parts element(const ElementAccess& element) const;
  [[nodiscard]] std::string elementWords(const ElementAccess& element) const;
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
