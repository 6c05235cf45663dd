// Writes into one growing text and stops when that is long enough: the source form of a page's content, of lists that
// share their parts or of a list that holds itself must not cost more than what is shown of it.
#include "applescript/values/SourceForm.h"

#include "applescript/Interpreter.h"
#include "applescript/events/ScriptableApplication.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/Codes.h"
#include "applescript/values/Dates.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Names.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"
#include "applescript/values/ScriptObject.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <limits>

namespace tabwright::applescript {

namespace {

constexpr std::size_t deepestShown = 100;
constexpr std::size_t longestInSentence = 1000;

class SourceFormWriter {
public:
  explicit SourceFormWriter(std::size_t limit) : limit_(limit) {}

  std::string take() {
    if (out_.size() > limit_) {
      // The cut must not fall inside a character.
      std::size_t end = limit_;
      while (end > 0 && (static_cast<unsigned char>(out_[end]) & 0xC0) == 0x80)
        --end;
      out_.resize(end);
      out_ += "…";
    }
    return std::move(out_);
  }

  void write(const Value& value) {
    if (out_.size() > limit_)
      return;
    if (depth_ > deepestShown) {
      out_ += "…";
      return;
    }
    ++depth_;
    value.visit(*this);
    --depth_;
  }

  void operator()(Value::MissingValue) { out_ += "missing value"; }
  void operator()(Value::Null) { out_ += "null"; }
  void operator()(Value::Nothing) {}
  void operator()(bool value) { out_ += value ? "true" : "false"; }
  void operator()(std::int64_t value) { out_ += std::to_string(value); }
  void operator()(double value) { out_ += realText(value); }
  void operator()(Date value) { out_ += fmt::format("date \"{}\"", dateText(value)); }
  void operator()(const Value::ClassPointer& value) { out_ += classWords(*value); }
  void operator()(const Value::EnumeratorPointer& value) {
    out_ += value->words.empty() ? fmt::format("«constant ****{}»", toString(value->code)) : value->words;
  }
  void operator()(const Value::ScriptPointer& script) { out_ += script->description(); }
  void operator()(const Value::ForeignPointer& foreign) { out_ += foreign->description(); }
  void operator()(const Value::ReferencePointer& reference) { out_ += reference->description(); }
  void operator()(const Value::SpecifierPointer& specifier) { write(*specifier); }

  void operator()(const Text& text) {
    out_ += '"';
    const std::string& utf8 = text.utf8();
    const std::size_t shown = std::min(utf8.size(), limit_ - std::min(limit_, out_.size()) + 1);
    for (const char c : std::string_view(utf8).substr(0, shown)) {
      if (c == '"' || c == '\\')
        out_ += '\\';
      out_ += c;
    }
    out_ += '"';
  }

  void operator()(const Value::ListPointer& list) {
    out_ += '{';
    bool first = true;
    for (const Value& item : list->items) {
      if (out_.size() > limit_)
        return;
      out_ += std::exchange(first, false) ? "" : ", ";
      write(item);
    }
    out_ += '}';
  }

  void operator()(const Value::RecordPointer& record) {
    out_ += '{';
    bool first = true;
    for (const auto& [label, value] : record->fields) {
      if (out_.size() > limit_)
        return;
      out_ += std::exchange(first, false) ? "" : ", ";
      out_ += label.code != 0 ? label.name : nameInSource(label.name);
      out_ += ':';
      write(value);
    }
    out_ += '}';
  }

  void write(const ObjectSpecifier& specifier) {
    using Form = ObjectSpecifier::Form;
    if (specifier.form == Form::application) {
      out_ += specifier.application ? fmt::format("application \"{}\"", specifier.application->name())
                                    : "current application";
      return;
    }
    if (specifier.form == Form::tested) {
      out_ += "it";
      return;
    }
    writeStep(specifier);
    if (!specifier.container)
      return;
    const bool isPlaceBeside = specifier.form == Form::before || specifier.form == Form::after;
    if (specifier.container->form != Form::tested) {
      out_ += isPlaceBeside ? " " : " of ";
      write(Value(specifier.container));
    }
    if (specifier.test) {
      out_ += " whose ";
      // What hangs from the object under test doesn't know its application.
      const Restored<const Terminology*> terminology(
          terminology_, specifier.application ? specifier.application->terminology() : terminology_);
      writeTest(*specifier.test);
    }
  }

private:
  [[nodiscard]] const Term* find(const ObjectSpecifier& specifier, Term::Kind kind) const {
    const Terminology* own = specifier.application ? specifier.application->terminology() : terminology_;
    if (own) {
      if (const Term* term = own->findCode(kind, specifier.desiredClass))
        return term;
    }
    return languageTerminology().findCode(kind, specifier.desiredClass);
  }

  [[nodiscard]] std::string elementWords(const ObjectSpecifier& specifier, bool plural) const {
    const Term* term = find(specifier, Term::Kind::className);
    if (!term)
      return fmt::format("«class {}»", toString(specifier.desiredClass));
    return std::string(plural && !term->plural.empty() ? term->plural : term->words);
  }

  void writeStep(const ObjectSpecifier& specifier) {
    using Form = ObjectSpecifier::Form;
    switch (specifier.form) {
    case Form::application:
    case Form::tested:
      break;
    case Form::property: {
      const Term* term = find(specifier, Term::Kind::property);
      out_ += term ? std::string(term->words) : fmt::format("«property {}»", toString(specifier.desiredClass));
      break;
    }
    case Form::index:
      if (const auto* index = specifier.key.get<std::int64_t>(); index && *index == -1) {
        out_ += "last " + elementWords(specifier, false);
      } else {
        out_ += elementWords(specifier, false) + " ";
        write(specifier.key);
      }
      break;
    case Form::middle:
      out_ += "middle " + elementWords(specifier, false);
      break;
    case Form::some:
      out_ += "some " + elementWords(specifier, false);
      break;
    case Form::every:
      out_ += "every " + elementWords(specifier, false);
      break;
    case Form::name:
      out_ += elementWords(specifier, false) + " ";
      write(specifier.key);
      break;
    case Form::id:
      out_ += elementWords(specifier, false) + " id ";
      write(specifier.key);
      break;
    case Form::range:
      out_ += elementWords(specifier, true) + " ";
      write(specifier.key);
      out_ += " thru ";
      write(specifier.rangeEnd);
      break;
    case Form::before:
    case Form::after:
      if (specifier.desiredClass != 0)
        out_ += elementWords(specifier, false) + " ";
      out_ += specifier.form == Form::before ? "before" : "after";
      break;
    case Form::beginning:
      out_ += "beginning";
      break;
    case Form::end:
      out_ += "end";
      break;
    }
  }

  void writeTest(const SpecifierTest& test) {
    if (out_.size() > limit_ || depth_ > deepestShown)
      return;
    ++depth_;
    constexpr std::array<std::string_view, 9> words{"is",          ">",         "≥",        "<",    "≤",
                                                    "begins with", "ends with", "contains", "is in"};
    switch (test.kind) {
    case SpecifierTest::Kind::comparison:
      write(test.left);
      out_ += fmt::format(" {} ", words[static_cast<std::size_t>(test.comparison)]);
      write(test.right);
      break;
    case SpecifierTest::Kind::negation:
      out_ += "not (";
      writeTest(*test.operands.front());
      out_ += ')';
      break;
    case SpecifierTest::Kind::both:
    case SpecifierTest::Kind::either:
      for (std::size_t index = 0; index < test.operands.size(); ++index) {
        if (index > 0)
          out_ += test.kind == SpecifierTest::Kind::both ? " and " : " or ";
        writeTest(*test.operands[index]);
      }
      break;
    }
    --depth_;
  }

  std::string out_;
  std::size_t limit_;
  std::size_t depth_ = 0;
  const Terminology* terminology_ = nullptr; ///< of the application whose objects are being put to a test
};

} // namespace

std::string sourceFormUpTo(const Value& value, std::size_t limit) {
  // The place of a reference is described by its list, which may hold references in turn.
  static thread_local int nested = 0;
  if (nested >= 10)
    return "…";
  const Restored<int> level(nested, nested + 1);
  SourceFormWriter writer(limit);
  writer.write(value);
  return writer.take();
}

std::string shortSourceForm(const Value& value) {
  return sourceFormUpTo(value, longestInSentence);
}

std::string sourceForm(const ObjectSpecifier& specifier) {
  SourceFormWriter writer(longestInSentence);
  writer.write(specifier);
  return writer.take();
}

std::string sourceForm(const Value& value) {
  return sourceFormUpTo(value, std::size_t{64} << 20);
}

std::string nameInSource(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  const auto isPart = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
  if (!name.empty() && isLetter(name.front()) && std::ranges::all_of(name, isPart))
    return std::string(name);
  return fmt::format("|{}|", name);
}

std::string classWords(const ClassName& name) {
  return name.words.empty() ? fmt::format("«class {}»", toString(name.code)) : name.words;
}

} // namespace tabwright::applescript
