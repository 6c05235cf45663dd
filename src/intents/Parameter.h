#pragma once

#include "intents/LocalizedText.h"
#include "intents/NeedsValue.h"
#include "intents/OptionsProvider.h"
#include "intents/ValueTraits.h"
#include "intents/ValueType.h"

#include <boost/json/value.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tabwright::intents {

class Intent;

/// An action may run without an optional parameter. A required one without default must be given when the action's
/// summary shows it; while it isn't shown it may lack a value.
enum class Presence { required, optional };

/// The behaviour of a field for the text where one is shown: an action says it, and a front end with fields would keep
/// to it.
struct TextInputOptions {
  enum class KeyboardType { standard, asciiCapable };
  enum class Capitalization { sentences, none };

  KeyboardType keyboardType = KeyboardType::standard;
  Capitalization capitalization = Capitalization::sentences;
  /// This and the rest are on for words of a language; code and selectors switch them off.
  bool multiline = true;
  bool autocorrect = true;
  bool smartQuotes = true;
  bool smartDashes = true;
};

/// Agents aren't offered a parameter that another one says in fewer words, since all of them are in an agent's memory
/// before the first call. They may give it all the same.
enum class Audience { everyone, people };

/// All that is known of a parameter without its C++ type. It doesn't change once the parameter is made; the value is
/// the parameter's.
struct ParameterDeclaration {
  /// Known to users, agents and workflows, who may write it in any case.
  std::string name;
  ValueType type;
  LocalizedText title;
  LocalizedText description; ///< a line that says enough for a first use; behind a line break, what only help shows
  std::optional<LocalizedText> requestDialog; ///< the question to ask when a value is missing
  Presence presence = Presence::required;
  std::optional<boost::json::value> defaultValue; ///< in JSON form; an options provider may know another
  const OptionsProvider* options = nullptr;       ///< outlives the action
  std::optional<TextInputOptions> textInput;
  std::string example; ///< as written on a command line; empty when the default serves
  Audience audience = Audience::everyone;
};

/// A parameter as an action's class writes it down. What is left out follows by rule: keys are
/// `intent.ACTION.parameter.NAME.title` and `.description` in the action's table, and there is no dialog.
template <class T>
struct ParameterSpec {
  std::string_view name;
  Presence presence = Presence::required;
  std::optional<T> defaultValue{};
  /// For a text that doesn't follow the rule, such as one that actions share.
  std::optional<LocalizedText> title{};
  std::optional<LocalizedText> description{};
  /// None: the question is made of the title.
  std::optional<LocalizedText> requestDialog{};
  /// Of choices that are known only at run time; null for others.
  const OptionsProvider* options = nullptr;
  std::optional<TextInputOptions> textInput{};
  /// As written on a command line. Examples of the help are made of it, and are run by tests.
  std::string_view example{};
  Audience audience = Audience::everyone;
};

/// A parameter of an action, whatever its type: what readers, schemas and help work with. Belongs to the thread of its
/// action.
class ParameterBase {
public:
  virtual ~ParameterBase() = default;
  ParameterBase(const ParameterBase&) = delete;
  ParameterBase& operator=(const ParameterBase&) = delete;

  [[nodiscard]] const ParameterDeclaration& declaration() const { return declaration_; }
  [[nodiscard]] const std::string& name() const { return declaration_.name; }

  /// True for a default, too.
  [[nodiscard]] virtual bool hasValue() const = 0;
  /// The value in the form that `setJson` takes; null when there is none.
  [[nodiscard]] virtual boost::json::value json() const = 0;
  /// Takes a value. Null takes the value away. Throws `ValueError`, without the parameter's name, and leaves the
  /// parameter as it was.
  virtual void setJson(const boost::json::value& json) = 0;
  /// The same of a text from a command line, in UTF-8. An empty text is a value like any other, and fits only where its
  /// type takes one.
  virtual void setText(std::string_view text) = 0;

  /// For an action to throw when it can't go on without a value, or with the one at hand: the question is that of the
  /// declaration, or made of the title.
  [[nodiscard]] NeedsValue needsValueError() const;

protected:
  /// Enters the parameter into its action's list, behind those made before it, and fills in what follows by rule.
  ParameterBase(Intent& owner, ParameterDeclaration declaration);

private:
  ParameterDeclaration declaration_;
};

/// A parameter of an action, declared as a member of its class and filled in by the host before `perform`:
///
///     Parameter<std::string> cssSelector{*this, {.name = "cssSelector"}};
///     ... *cssSelector ...
///
/// The members' order is the order in which parameters are shown. It lives and dies with the action.
template <class T>
class Parameter final : public ParameterBase {
public:
  /// Takes the declared default, else the one that the options provider offers, else no value. `owner` is the action
  /// that it is a member of; the provider outlives both.
  Parameter(Intent& owner, const ParameterSpec<T>& spec) : ParameterBase(owner, untyped(spec)) {
    if (spec.defaultValue)
      value_ = spec.defaultValue;
    else if (const auto offered = spec.options ? spec.options->defaultResult() : std::nullopt)
      value_ = ValueTraits<T>::fromJson(offered->value);
  }

  /// The value. Throws `needsValueError()` when there is none.
  [[nodiscard]] const T& operator*() const {
    if (!value_)
      throw needsValueError();
    return *value_;
  }
  /// Throws like `*`.
  [[nodiscard]] const T* operator->() const { return &**this; }
  /// The value, or nothing: for parameters that may be left out.
  [[nodiscard]] const std::optional<T>& value() const { return value_; }
  /// Sets the value as it is; an empty one takes it away.
  void set(std::optional<T> value) { value_ = std::move(value); }

  [[nodiscard]] bool hasValue() const override { return value_.has_value(); }
  [[nodiscard]] boost::json::value json() const override { return ValueTraits<std::optional<T>>::toJson(value_); }
  void setJson(const boost::json::value& json) override {
    value_ = json.is_null() ? std::nullopt : std::optional<T>(ValueTraits<T>::fromJson(json));
  }
  void setText(std::string_view text) override { value_ = ValueTraits<T>::fromText(text); }

private:
  static ParameterDeclaration untyped(const ParameterSpec<T>& spec) {
    return {.name = std::string(spec.name),
            .type = ValueTraits<T>::type(),
            .title = spec.title.value_or(LocalizedText{}),
            .description = spec.description.value_or(LocalizedText{}),
            .requestDialog = spec.requestDialog,
            .presence = spec.presence,
            .defaultValue =
                spec.defaultValue ? std::optional(ValueTraits<T>::toJson(*spec.defaultValue)) : std::nullopt,
            .options = spec.options,
            .textInput = spec.textInput,
            .example = std::string(spec.example),
            .audience = spec.audience};
  }

  std::optional<T> value_;
};

} // namespace tabwright::intents
