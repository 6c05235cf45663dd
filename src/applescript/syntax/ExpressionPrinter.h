#pragma once

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
  [[nodiscard]] static std::string text(std::string_view value);

private:
  [[nodiscard]] std::string literal(const Literal& literal) const;
  [[nodiscard]] std::string inContainer(std::string reference, const ExpressionPointer& container) const;
  [[nodiscard]] std::string property(const PropertyAccess& access) const;
  [[nodiscard]] std::string element(const ElementAccess& element) const;
  [[nodiscard]] std::string insertionPoint(const InsertionPoint& point) const;
  [[nodiscard]] std::string call(const HandlerCall& call) const;
  [[nodiscard]] std::string command(const Command& command) const;
  [[nodiscard]] std::string message(const ObjectiveCMessage& message) const;
  [[nodiscard]] std::string list(const ListLiteral& list) const;
  [[nodiscard]] std::string record(const RecordLiteral& record) const;

  const SyntaxTree& tree_;
};

} // namespace tabwright::applescript
