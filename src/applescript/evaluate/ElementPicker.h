#pragma once

#include "applescript/ScriptError.h"
#include "applescript/syntax/Tree.h"
#include "applescript/values/TextElements.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::applescript {

/// The keys of an access to elements, evaluated. `missing value` where the form of the access has none.
struct ElementKey {
  Value first; ///< index, name, id, or start of the range
  Value last;  ///< end of the range
};

/// The step that an access adds to a specifier, with its form and keys and without container, application and test. A
/// bare `tab x` whose key is a text becomes Form::name.
[[nodiscard]] std::shared_ptr<ObjectSpecifier> stepOf(const ElementAccess& access, const ElementKey& key);

/// Picks elements of values: items of lists, and characters, words, paragraphs and text items of texts.
///
/// Works on values alone: keys have been evaluated, and a `whose` has been put to `candidates`. Remembers where the
/// pieces of the last text are, so that a loop over them costs one pass over the text. Throws ScriptError −1728 for
/// what isn't there.
class ElementPicker {
public:
  /// `random` gives a number in [0, 1). `delimiters` (a text or a list of texts) and `attributes` are those in force
  /// when elements are picked. All must outlive the picker.
  ElementPicker(const std::function<double()>& random, const Value& delimiters, const TextAttributes& attributes)
      : random_(random), delimiters_(delimiters), attributes_(attributes) {}

  /// An access without `whose` comes to one element, or to the list of them. −1728 for a container that is neither a
  /// list nor a text.
  [[nodiscard]] Value pick(const Value& container, const ElementAccess& access, const ElementKey& key);
  /// The same of `elements`, which are all candidates there are in the container; that one is for the error only.
  [[nodiscard]] Value pickFrom(const std::vector<Value>& elements, const ElementAccess& access, const ElementKey& key,
                               const Value& container) const;
  /// All elements of the access's class, in order: what a `whose` is put to before one is picked.
  [[nodiscard]] std::vector<Value> candidates(const Value& container, const ElementAccess& access,
                                              const ElementKey& key);
  /// 0-based; for all forms that name one element by its position. Negative indices count from the end, 0 is none.
  [[nodiscard]] std::size_t position(std::size_t count, const ElementAccess& access, const ElementKey& key,
                                     const Value& container) const;

  /// `text from word 2 to word 4 of t`: a range of a text whose ends are elements of it.
  struct End {
    /// Without a container: an element of the text that the range is of.
    const ElementAccess& access;
    ElementKey key;
  };
  /// The ends may come in either order; both belong to the range. `text` gives one text, another class the list of its
  /// pieces in between.
  [[nodiscard]] Value pickBetween(const Text& text, const ElementAccess& access, const End& from, const End& to);

  /// The number of pieces that a text has of a class, counted without making them; nothing for a class of no pieces.
  [[nodiscard]] std::optional<std::int64_t> countPieces(const Text& text, FourCharCode elementClass);
  /// For whoever else counts characters: a text that was indexed here isn't walked again.
  [[nodiscard]] CharacterIndex& characters() { return characters_; }

private:
  Value pickFromText(const Text& text, const ElementAccess& access, const ElementKey& key);
  std::pair<std::size_t, std::size_t> positions(std::size_t count, const ElementAccess& access, const ElementKey& key,
                                                const Value& container) const;
  const std::vector<TextRange>& pieces(const Text& text, FourCharCode elementClass);

  const std::function<double()>& random_;
  const Value& delimiters_;
  const TextAttributes& attributes_;
  CharacterIndex characters_;
  PieceIndex pieces_;
};

} // namespace tabwright::applescript
