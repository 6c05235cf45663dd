#include "intents/Intent.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tabwright::intents {
namespace {

enum class Filter { off, on };
constexpr auto filters = enumTable<Filter>({{Filter::off, "off"}, {Filter::on, "on"}});
constexpr EnumDeclaration enumDeclaration(Filter) {
  return {"Filter", tables::enums, filters};
}

class Find final : public Intent {
public:
  Find() : Intent("Find", "Intents-Demo", {}) {
    summarise({{.when = {is(filter, Filter::off)}, .key = "filter.off", .sentence = {&place}, .further = {&filter}},
               {.key = "filter.defaultCase", .sentence = {&place, &filter, &text}}});
  }
  ValueType resultType() const override { return {}; }

  Parameter<std::string> place{*this,
                               {.name = "place", .requestDialog = LocalizedText{"Where is it?"}, .example = "here"}};
  Parameter<Filter> filter{*this, {.name = "filter", .defaultValue = Filter::off}};
  Parameter<std::string> text{*this, {.name = "text"}};
  Parameter<bool> deep{*this, {.name = "deep", .presence = Presence::optional, .title = LocalizedText{"Deeply"}}};
};

TEST(Intent, ParametersStandInDeclaredOrderWithKeysByRule) {
  const Find find;
  ASSERT_EQ(find.parameters().size(), 4U);
  EXPECT_EQ(find.parameters()[1]->name(), "filter");
  EXPECT_EQ(find.place.declaration().title, (LocalizedText{"intent.Find.parameter.place.title", "Intents-Demo"}));
  EXPECT_EQ(find.deep.declaration().title, (LocalizedText{"Deeply", "Localizable"}));
  EXPECT_EQ(find.deep.declaration().description.key, "intent.Find.parameter.deep.description");
  EXPECT_EQ(find.title(), (LocalizedText{"intent.Find.title.betaBuild", "Intents-Demo"}));
  EXPECT_EQ(find.findParameter("place"), &find.place);
  EXPECT_EQ(find.findParameter("PLACE"), &find.place);
  EXPECT_EQ(find.findParameter("places"), nullptr);
}

TEST(Intent, SummaryFollowsTheValuesAndItsKeysEndInABlank) {
  Find find;
  EXPECT_EQ(find.summaryText(find.summary().current()).key, "intent.Find.parameterSummary.filter.off ");
  find.filter.set(Filter::on);
  EXPECT_EQ(find.summaryText(find.summary().current()).key, "intent.Find.parameterSummary.filter.defaultCase ");
  EXPECT_EQ(find.summaryText({}).key, "intent.Find.parameterSummary ");
}

TEST(Intent, RequiredParametersMustBeGivenWhereTheSummaryShowsThem) {
  Find find;
  EXPECT_EQ(find.missingParameter(), &find.place);
  EXPECT_TRUE(find.isAlwaysNeeded(find.place));
  EXPECT_FALSE(find.isAlwaysNeeded(find.text));
  find.place.set("x");
  EXPECT_EQ(find.missingParameter(), nullptr);
  find.filter.set(Filter::on);
  EXPECT_EQ(find.missingParameter(), &find.text);
  find.text.set("");
  EXPECT_EQ(find.missingParameter(), nullptr) << "the empty text is a value";
}

TEST(Intent, ReadingAMissingValueAsksForIt) {
  const Find find;
  try {
    static_cast<void>(*find.place);
    FAIL();
  } catch (const NeedsValue& needs) {
    EXPECT_EQ(needs.parameter(), "place");
    EXPECT_EQ(needs.question(), "Where is it?");
    EXPECT_EQ(needs.errorDescription(), "place needs a value. Where is it?");
  }
  EXPECT_EQ(find.deep.needsValueError().question(), "Which value is meant for “Deeply”?");
}

TEST(Intent, ARefusedValueLeavesTheOldOne) {
  Find find;
  find.filter.set(Filter::on);
  EXPECT_THROW(find.filter.setText("maybe"), ValueError);
  EXPECT_EQ(*find.filter, Filter::on);
  find.filter.setJson(nullptr);
  EXPECT_FALSE(find.filter.hasValue());
}

TEST(Intent, ASummaryNeedsARowForEveryCase) {
  struct Open final : Intent {
    Open() : Intent("Open", "", {}) { summarise({{.when = {is(filter, Filter::on)}}}); }
    ValueType resultType() const override { return {}; }
    Parameter<Filter> filter{*this, {.name = "filter", .defaultValue = Filter::off}};
  };
  EXPECT_THROW(Open(), std::logic_error);
}

} // namespace
} // namespace tabwright::intents
