// Texts and declarations, held against each other: each key that an action, enum or entity declares has a text, each
// text belongs to a declaration, and summaries have exactly the fields that they declare.
#include "actions/enums/EnableDisableSelection.h"
#include "actions/enums/EnableDisableToggleSelection.h"
#include "actions/enums/ErrorHandlingSelection.h"
#include "actions/enums/KeyboardModifiersStatus.h"
#include "actions/enums/MenuItemBasicsSelection.h"
#include "actions/enums/MenuItemFullSelection.h"
#include "actions/enums/PostActionDelay.h"
#include "actions/enums/TypingDelay.h"
#include "actions/enums/WindowTitleFilterEnum.h"
#include "automation/MenuItemEntity.h"
#include "automation/NamedKey.h"
#include "automation/StringFilterEnum.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/AxeError.h"
#include "engine/errors/ScriptacularError.h"
#include "intents/EntityDefinition.h"
#include "support/ActionBench.h"
#include "support/SourceFolder.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>

namespace tabwright::host {
namespace {

using intents::LocalizedText;

class Strings : public testing::Test {
protected:
  Strings() {
    for (const std::string& name : bench.catalogue.names()) {
      const auto action = bench.catalogue.make(name);
      declare(action->title());
      for (const intents::SummaryRow& row : action->summary().rows)
        declare(action->summaryText(row));
      declareParameters(*action);
    }
    // Shared enums and entities, whether or not an action has a parameter of them.
    declareEnums<actions::EnableDisableSelection, actions::EnableDisableToggleSelection,
                 actions::ErrorHandlingSelection, actions::KeyboardModifiersStatus, actions::MenuItemBasicsSelection,
                 actions::MenuItemFullSelection, actions::PostActionDelay, automation::StringFilterEnum,
                 actions::TypingDelay, actions::WindowTitleFilterEnum>();
    declareType(intents::ValueTraits<automation::MenuItemEntity>::type());
    declareType(intents::ValueTraits<automation::NamedKey>::type());
  }

  template <intents::DeclaredEnum... Enums>
  void declareEnums() {
    (declareType(intents::ValueTraits<Enums>::type()), ...);
  }

  void declare(const LocalizedText& text) { declared[text.table].insert(text.key); }

  void declareParameters(const intents::Intent& action) {
    for (const intents::ParameterBase* parameter : action.parameters()) {
      const intents::ParameterDeclaration& declaration = parameter->declaration();
      declare(declaration.title);
      declare(declaration.description);
      if (declaration.requestDialog)
        declare(*declaration.requestDialog);
      declareType(declaration.type);
    }
    declareType(action.resultType());
  }

  void declareType(const intents::ValueType& type) {
    if (type.enumeration) {
      declare(type.enumeration->typeCaption());
      for (const intents::EnumCase& enumCase : type.enumeration->cases)
        declare(type.enumeration->caption(enumCase));
    }
    if (type.entity && declared[type.entity->typeCaption.table].insert(type.entity->typeCaption.key).second) {
      for (const intents::PropertyDeclaration& property : type.entity->properties) {
        declare(property.title);
        declareType(property.type);
      }
    }
  }

  static std::filesystem::path stringsFolder() { return testsupport::sourceFolder() / "resources/strings"; }

  static boost::json::object tableOf(const std::string& name, const std::string& language = "en") {
    return boost::json::parse(testsupport::sourceText(stringsFolder() / language / (name + ".json"))).as_object();
  }

  testsupport::ActionBench bench;
  std::map<std::string, std::set<std::string>> declared; // keys by table
};

TEST_F(Strings, EveryDeclaredKeyHasAText) {
  for (const auto& [table, keys] : declared) {
    const boost::json::object texts = tableOf(table);
    for (const std::string& key : keys) {
      const boost::json::value* text = texts.if_contains(key);
      ASSERT_TRUE(text) << table << ": " << key;
      EXPECT_FALSE(text->as_string().empty()) << table << ": " << key;
    }
  }
}

TEST_F(Strings, EveryTextBelongsToADeclaration) {
  for (const auto& [table, keys] : declared) {
    for (const auto& [key, text] : tableOf(table)) {
      const bool isOfDeclarations = table != "Localizable" || key.starts_with("appEnum.");
      EXPECT_TRUE(!isOfDeclarations || keys.contains(key)) << table << ": " << key;
    }
  }
}

TEST_F(Strings, TextsOfHelpAreUsed) {
  std::string sources;
  for (const char* folder : {"src/host", "src/intents"}) {
    for (const auto& entry : std::filesystem::directory_iterator(testsupport::sourceFolder() / folder))
      sources += entry.is_regular_file() ? testsupport::sourceText(entry.path()) : "";
  }
  std::size_t count = 0;
  for (const auto& [key, text] : tableOf("Localizable")) {
    if (!key.starts_with("help.") && !key.starts_with("parameter."))
      continue;
    ++count;
    EXPECT_NE(sources.find('"' + std::string(key) + '"'), std::string::npos) << key;
  }
  EXPECT_GT(count, 0U);
}

// The sentences of an enum of errors, in its own order.
template <class Error>
void addSentences(std::set<std::string>& sentences) {
  try {
    for (int number = 0;; ++number)
      sentences.insert(errorDescription(static_cast<Error>(number), {}));
  } catch (const std::out_of_range&) { // the last one is behind
  }
}

std::set<std::string> errorSentences() {
  std::set<std::string> sentences;
  addSentences<engine::AppleScriptRuntimeError>(sentences);
  addSentences<engine::ScriptacularError>(sentences);
  addSentences<engine::AxeError>(sentences);
  return sentences;
}

TEST_F(Strings, EveryErrorThatIsItsOwnKeyHasATranslation) {
  EXPECT_EQ(errorSentences().size(), 28U);
  for (const auto& language : std::filesystem::directory_iterator(stringsFolder())) {
    if (language.path().filename() == "en")
      continue;
    const boost::json::object texts = tableOf("Localizable", language.path().filename());
    for (const std::string& sentence : errorSentences()) {
      const boost::json::value* text = texts.if_contains(sentence);
      EXPECT_TRUE(text && !text->as_string().empty()) << language.path() << ": " << sentence;
    }
  }
}

std::multiset<std::string> placeholdersOf(std::string_view text) {
  static const std::regex placeholder(R"(\$\{\w+\}|%(?:\d\$)?@)");
  std::multiset<std::string> found;
  for (std::cregex_iterator match(text.begin(), text.end(), placeholder), end; match != end; ++match)
    found.insert(match->str());
  return found;
}

TEST_F(Strings, EveryLanguageHasTheSameKeysAndPlaceholders) {
  std::size_t count = 0;
  for (const auto& language : std::filesystem::directory_iterator(stringsFolder())) {
    for (const auto& file : std::filesystem::directory_iterator(stringsFolder() / "en")) {
      const std::string table = file.path().stem();
      const boost::json::object english = tableOf(table);
      const boost::json::object translated = tableOf(table, language.path().filename());
      for (const auto& [key, text] : translated)
        EXPECT_TRUE(english.contains(key) || errorSentences().contains(key)) << language.path() << ": " << key;
      for (const auto& [key, text] : english) {
        const boost::json::value* other = translated.if_contains(key);
        ASSERT_TRUE(other && !other->as_string().empty()) << language.path() << ": " << key;
        EXPECT_EQ(placeholdersOf(other->as_string()), placeholdersOf(text.as_string()))
            << language.path() << ": " << key;
        ++count;
      }
    }
  }
  EXPECT_GT(count, 0U);
}

TEST_F(Strings, SummariesHoldTheirDeclaredFields) {
  for (const std::string& name : bench.catalogue.names()) {
    const auto action = bench.catalogue.make(name);
    for (const intents::SummaryRow& row : action->summary().rows) {
      std::multiset<std::string> expected;
      for (const intents::ParameterBase* parameter : row.sentence)
        expected.insert(parameter->name());
      const std::string text = action->summaryText(row).text();
      static const std::regex field(R"(\$\{(\w+)\})");
      std::multiset<std::string> found;
      for (std::sregex_iterator match(text.begin(), text.end(), field), end; match != end; ++match)
        found.insert((*match)[1]);
      EXPECT_EQ(found, expected) << text;
    }
  }
}

TEST_F(Strings, EveryParameterIsShownBySomeSummary) {
  for (const std::string& name : bench.catalogue.names()) {
    const auto action = bench.catalogue.make(name);
    for (const intents::ParameterBase* parameter : action->parameters())
      EXPECT_TRUE(std::ranges::any_of(action->summary().rows,
                                      [&](const intents::SummaryRow& row) { return row.shows(*parameter); }))
          << name << "." << parameter->name();
  }
}

} // namespace
} // namespace tabwright::host
