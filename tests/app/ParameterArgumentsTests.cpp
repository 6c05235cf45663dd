// Words on a command line become parameters; whose values they are is the catalogue's business.
#include "app/Composition.h"
#include "app/ParameterArguments.h"
#include "intents/UsageError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace tabwright::app {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

class ParameterArgumentsOfClickElement : public ::testing::Test {
protected:
  [[nodiscard]] ParameterArguments read(const std::vector<std::string>& words) {
    return readArguments(composition_.catalogue().declaration("ClickElement"), words);
  }
  [[nodiscard]] std::string refusal(const std::vector<std::string>& words) {
    try {
      static_cast<void>(read(words));
      return "taken";
    } catch (const intents::UsageError& error) {
      return error.errorDescription();
    }
  }

private:
  Composition composition_;
};

TEST_F(ParameterArgumentsOfClickElement, takesBothWaysOfWritingAValue) {
  EXPECT_THAT(read({"--cssSelector", "a", "--tabSelection=frontTab"}).parameters,
              ElementsAre(Pair("cssSelector", "a"), Pair("tabSelection", "frontTab")));
  EXPECT_THAT(read({"--cssSelector=a[href=\"x=y\"]"}).parameters, ElementsAre(Pair("cssSelector", "a[href=\"x=y\"]")));
}

TEST_F(ParameterArgumentsOfClickElement, takesATextAsItIsEvenIfItLooksLikeSomethingElse) {
  EXPECT_THAT(read({"--cssSelector", "@media"}).parameters, ElementsAre(Pair("cssSelector", "@media")));
  EXPECT_THAT(read({"--cssSelector", "-"}).parameters, ElementsAre(Pair("cssSelector", "-")));
  EXPECT_THAT(read({"--cssSelector", "--x"}).parameters, ElementsAre(Pair("cssSelector", "--x")));
}

TEST_F(ParameterArgumentsOfClickElement, readsATabFromAFile) {
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("tabwright-tab." + std::to_string(::getpid()));
  std::ofstream(file) << "{\"fullID\": \"org.chromium.chromium:8\"}";
  EXPECT_THAT(read({"--targetTab", "@" + file.string()}).parameters,
              ElementsAre(Pair("targetTab", "{\"fullID\": \"org.chromium.chromium:8\"}")));
  std::filesystem::remove(file);
  EXPECT_THAT(refusal({"--targetTab", "@" + file.string()}), HasSubstr("No such file or directory"));
}

TEST_F(ParameterArgumentsOfClickElement, takesAnElementForTheParameterThatTellsIt) {
  EXPECT_THAT(read({"--element", "button \"Send\""}).parameters, ElementsAre(Pair("cssSelector", "button \"Send\"")));
  const Composition composition;
  const auto of = [&](const char* action) {
    return readArguments(composition.catalogue().declaration(action), {"--element=kqz12"}).parameters;
  };
  EXPECT_THAT(of("SetFormFieldValue"),
              ElementsAre(Pair("targetField", "kqz12"), Pair("formFieldSelection", "cssSelector")));
  EXPECT_THROW(of("CloseTab"), intents::UsageError);
  EXPECT_EQ(refusal({"--element"}), "--element needs a value behind it.");
}

TEST_F(ParameterArgumentsOfClickElement, keepsItsOwnSwitchesApart) {
  const ParameterArguments arguments = read({"--json", "--cssSelector", "a", "--save-files", "x y", "--help"});
  EXPECT_EQ(arguments.filesFolder, "x y");
  EXPECT_EQ(read({"--save-files=z"}).filesFolder, "z");
  EXPECT_EQ(arguments.output, OutputForm::json);
  EXPECT_TRUE(arguments.wantsHelp);
  EXPECT_THAT(arguments.parameters, ElementsAre(Pair("cssSelector", "a")));
}

TEST_F(ParameterArgumentsOfClickElement, refusesWhatIsNoParameter) {
  EXPECT_THAT(refusal({"a"}), HasSubstr("“a” belongs to no parameter"));
  EXPECT_THAT(refusal({"--"}), HasSubstr("“--” belongs to no parameter"));
  EXPECT_EQ(refusal({"--cssSelector"}), "--cssSelector needs a value behind it.");
}

} // namespace
} // namespace tabwright::app
