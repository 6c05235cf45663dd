#include "actions/TabTarget.h"

namespace tabwright::actions {

std::vector<intents::SummaryRow> TabTarget::summary(const Fields& before, const Fields& behind,
                                                    const Fields& further) const {
  // Both forms differ in the place alone: a given tab, or a browser whose front tab is meant.
  const auto sentenceWith = [&](const intents::ParameterBase& place) {
    Fields sentence = before;
    sentence.insert(sentence.end(), {&tabSelection, &place});
    sentence.insert(sentence.end(), behind.begin(), behind.end());
    return sentence;
  };
  return {{.when = {intents::is(tabSelection, TabSelectionOption::specificTab)},
           .key = "tabSelection.specificTab",
           .sentence = sentenceWith(targetTab),
           .further = further},
          {.key = "tabSelection.defaultCase", .sentence = sentenceWith(targetContext), .further = further}};
}

} // namespace tabwright::actions
