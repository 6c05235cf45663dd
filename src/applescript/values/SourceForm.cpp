// Writes into one growing text and stops when that is long enough: the source form of a page's content, of lists that
// share their parts or of a list that holds itself must not cost more than what is shown of it.
#include "applescript/values/SourceForm.h"

#include "applescript/terminology/Terminology.h"
#include "applescript/values/Dates.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Names.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"
#include "applescript/values/ScriptObject.h"
#include "applescript/values/ScriptableApplication.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>

namespace tabwright::applescript {

namespace {

// Values, specifiers and tests inside of one another: the writer recurses into them.
constexpr std::size_t deepestShown = 100;
// In bytes: a few lines.
constexpr std::size_t longestInSentence = 1000;

class SourceFormWriter {
public:
  /// With a dictionary, specifiers are worded in it and without the application at their root.
  explicit SourceFormWriter(std::size_t limit, const Terminology* dictionary = nullptr)
      : limit_(limit), isWithinApplication_(dictionary != nullptr), dictionary_(dictionary) {}

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
    // One byte more than fits, so that `take` sees that something is missing.
    const std::size_t shown = std::min(utf8.size(), limit_ - std::min(limit_, out_.size()) + 1);
    for (const char c : std::string_view(utf8).substr(0, shown)) {
      // Line ends and tabs stay as they are, as the language takes them inside of quotation marks.
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
      // The bracket is left open: the `…` at the end tells that more would follow.
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
      // A dictionary's words need no bars, even if there are several.
      out_ += label.code != 0 ? label.name : nameInSource(label.name);
      out_ += ':';
      write(value);
    }
    out_ += '}';
  }

  void write(const ObjectSpecifier& specifier) {
    if (specifier.form == Form::application) {
      out_ += isWithinApplication_    ? "application"
              : specifier.application ? fmt::format("application \"{}\"", specifier.application->name())
                                      : "current application";
      return;
    }
    // One code may be a class and a property, each with words of its own.
    const Term::Kind kind = specifier.form == Form::property ? Term::Kind::property : Term::Kind::className;
    if (const Term* term = find(specifier, kind)) {
      writeStep(specifier, {term->words, term->plural.empty() ? term->words : term->plural});
    } else {
      const std::string code =
          fmt::format("«{} {}»", kind == Term::Kind::property ? "property" : "class", toString(specifier.desiredClass));
      writeStep(specifier, {code, code});
    }
    const ObjectSpecifier* container = specifier.container.get();
    if (!container)
      return;
    // An object under test isn't named, and the application already stands in front of the sentence.
    const bool isOutermost =
        container->form == Form::tested || (isWithinApplication_ && container->form == Form::application);
    if (!isOutermost) {
      out_ += specifier.form == Form::before || specifier.form == Form::after ? " " : " of ";
      write(Value(specifier.container));
    }
    if (specifier.test) {
      out_ += " whose ";
      // An object under test doesn't know its application.
      const Restored<const Terminology*> dictionary(dictionary_, dictionaryOf(specifier));
      writeTest(*specifier.test);
    }
  }

  void writeStep(const ObjectSpecifier& step, StepWords words) {
    // `last tab` has no index of its own: it is −1.
    if (const auto* index = step.key.get<std::int64_t>(); step.form == Form::index && index && *index == -1) {
      out_ += fmt::format("last {}", words.singular);
      return;
    }
    // A place beside an element, and not the element there.
    if ((step.form == Form::before || step.form == Form::after) && step.desiredClass == 0) {
      out_ += step.form == Form::before ? "before" : "after";
      return;
    }
    out_ += wordsBeforeKey(step.form, words);
    if (step.form == Form::index || step.form == Form::name || step.form == Form::id || step.form == Form::range)
      write(step.key);
    if (step.form == Form::range) {
      out_ += " thru ";
      write(step.rangeEnd);
    }
  }

private:
  using Form = ObjectSpecifier::Form;

  [[nodiscard]] const Terminology* dictionaryOf(const ObjectSpecifier& specifier) const {
    return !isWithinApplication_ && specifier.application ? specifier.application->terminology() : dictionary_;
  }

  [[nodiscard]] const Term* find(const ObjectSpecifier& specifier, Term::Kind kind) const {
    // The language's own words fill in for a dictionary that lacks the code.
    const Terminology* own = dictionaryOf(specifier);
    const Term* term = own ? own->findCode(kind, specifier.desiredClass) : nullptr;
    return term ? term : languageTerminology().findCode(kind, specifier.desiredClass);
  }

  void writeTest(const SpecifierTest& test) {
    if (out_.size() > limit_ || depth_ > deepestShown)
      return;
    ++depth_;
    switch (test.kind) {
    case SpecifierTest::Kind::comparison:
      write(test.left);
      out_ += fmt::format(" {} ", sourceForm(test.comparison));
      write(test.right);
      break;
    case SpecifierTest::Kind::negation:
      out_ += "not (";
      writeTest(*test.operands.front());
      out_ += ')';
      break;
    case SpecifierTest::Kind::both:
    case SpecifierTest::Kind::either:
      // Without brackets around, as people read it; an `or` inside an `and` isn't told apart.
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
  bool isWithinApplication_;
  const Terminology* dictionary_; ///< the one given, or of the application whose objects are being put to a test
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

std::string shortSourceForm(const Value& value, const Terminology& dictionary) {
  SourceFormWriter writer(longestInSentence, &dictionary);
  writer.write(value);
  return writer.take();
}

std::string shortSourceForm(const ObjectSpecifier& specifier, const Terminology& dictionary) {
  SourceFormWriter writer(longestInSentence, &dictionary);
  writer.write(specifier);
  return writer.take();
}

std::string stepSourceForm(const ObjectSpecifier& step, StepWords words) {
  SourceFormWriter writer(longestInSentence);
  writer.writeStep(step, words);
  return writer.take();
}

std::string wordsBeforeKey(ObjectSpecifier::Form form, StepWords words) {
  /// In the order of ObjectSpecifier::Form.
  static constexpr auto patterns =
      std::to_array<std::string_view>({"application", "it", "{0}", "{0} ", "middle {0}", "some {0}", "every {0}",
                                       "{0} ", "{0} id ", "{1} ", "{0} before", "{0} after", "beginning", "end"});
  static_assert(patterns.size() == static_cast<std::size_t>(ObjectSpecifier::Form::end) + 1);
  return fmt::format(fmt::runtime(patterns[static_cast<std::size_t>(form)]), words.singular, words.plural);
}

std::string sourceForm(const Value& value) {
  return sourceFormUpTo(value, std::size_t{64} << 20);
}

std::string nameInSource(std::string_view name) {
  if (isIdentifier(name))
    return std::string(name);
  return fmt::format("|{}|", name);
}

std::string classWords(const ClassName& name) {
  return name.words.empty() ? fmt::format("«class {}»", toString(name.code)) : name.words;
}

std::string commandWords(EventCode event, const Terminology& dictionary) {
  const Term* command = dictionary.findCommand(event);
  if (!command)
    command = languageTerminology().findCommand(event);
  return command ? std::string(command->words)
                 : fmt::format("«event {}{}»", toString(event.eventClass), toString(event.eventID));
}

} // namespace tabwright::applescript
