#pragma once

#include "intents/Parameter.h"
#include "intents/Summary.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::intents {

/// The worst that a run of an action can do, for people who allow an agent its tools. They become the annotations of
/// tools in the Model Context Protocol, and change nothing about the run.
struct Hints {
  bool readsOnly = false;        ///< nothing in the browser or in a page is changed; `isOpen` alone counts beside it
  bool destroys = false;         ///< a run may lose something: a tab, typed text, what a page's own code does
  bool isIdempotent = false;     ///< a second run with the same parameters changes nothing more
  bool isWrittenByPages = false; ///< the result is text of a page's, which agents are told not to take for their user's
  bool isOpen = true; ///< works on pages, which anybody may have written; false for the browser's own windows and tabs
};

/// An action as it is listed, described and filled in: a name, typed parameters, a summary, a result type.
///
/// An action's class derives from it and declares each parameter once, as a member:
///
///     class Greet : public Intent {
///     public:
///       Greet() : Intent("Greet", "Intents-Demo", {.readsOnly = true}) {
///         summarise({{.sentence = {&person}}});
///       }
///       ValueType resultType() const override { return ValueTraits<std::string>::type(); }
///       Parameter<std::string> person{*this, {.name = "person", .example = "Ann"}};
///     };
///
/// Title and summary have the keys `intent.NAME.title.betaBuild` and `intent.NAME.parameterSummary.ROW ` (with the
/// blank at the end) in the action's table. An object holds the parameter values of one run and belongs to one thread
/// at a time; a const one may be read from any. It can't be copied or moved, since its parameters know it.
class Intent {
public:
  virtual ~Intent() = default;
  Intent(const Intent&) = delete;
  Intent& operator=(const Intent&) = delete;

  /// The short name, in ASCII, as users and agents write it: "ClickElement".
  [[nodiscard]] const std::string& name() const { return name_; }
  /// The string table with the action's texts; actions of one kind share one.
  [[nodiscard]] const std::string& table() const { return table_; }
  [[nodiscard]] const Hints& hints() const { return hints_; }
  /// A few words for lists: "Click element".
  [[nodiscard]] LocalizedText title() const;
  /// In declaration order, which is the one in which they are shown.
  [[nodiscard]] std::span<const ParameterBase* const> parameters() const { return parameters_; }
  [[nodiscard]] std::span<ParameterBase* const> parameters() { return parameters_; }
  /// The parameter of that name, in any case; null for none.
  [[nodiscard]] const ParameterBase* findParameter(std::string_view name) const;
  [[nodiscard]] ParameterBase* findParameter(std::string_view name);
  [[nodiscard]] const Summary& summary() const { return summary_; }
  /// The sentence of a row of this action's summary, with its fields as "${name}".
  [[nodiscard]] LocalizedText summaryText(const SummaryRow& row) const;
  /// The parameters that count only for certain values of others, as the action's class declares it, in that order.
  [[nodiscard]] const std::vector<Dependence>& dependences() const { return dependences_; }
  /// Of kind `nothing` for an action without a result. The same at each call.
  [[nodiscard]] virtual ValueType resultType() const = 0;

  /// The parameters that must be given and haven't been: required, shown by the summary as the values are now, and
  /// without a value. The action can run when there are none.
  [[nodiscard]] std::vector<const ParameterBase*> missingParameters() const;
  /// The first of them, or null.
  [[nodiscard]] const ParameterBase* missingParameter() const;
  /// True for a parameter that must be given whatever the others say: required, without a value so far, and shown by
  /// every form of the summary.
  [[nodiscard]] bool isAlwaysNeeded(const ParameterBase& parameter) const;

protected:
  Intent(std::string name, std::string_view table, const Hints& hints)
      : name_(std::move(name)), table_(table), hints_(hints) {}

  /// Sets the summary, once, in the constructor. Its last row must have no condition: `std::logic_error`.
  void summarise(std::vector<SummaryRow> rows);
  /// Says that a parameter counts only with a choice: readers settle the choice by it, or refuse what wouldn't count.
  /// In the constructor, behind the parameters.
  void declare(Dependence dependence) { dependences_.push_back(std::move(dependence)); }

private:
  friend ParameterBase;

  std::string name_;
  std::string table_;
  Hints hints_;
  std::vector<ParameterBase*> parameters_;
  Summary summary_;
  std::vector<Dependence> dependences_;
};

} // namespace tabwright::intents
