// Spot checks of words and numbers: the tables themselves guard their order.
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/AxeError.h"
#include "engine/errors/JavascriptError.h"
#include "engine/errors/StringError.h"

#include <gtest/gtest.h>

namespace tabwright::engine {
namespace {

TEST(ErrorCatalogue, FindsTheTextsOfItsSymbolicKeys) {
  const std::string syntax = errorDescription(JavascriptError::syntaxException, "SyntaxError: 100%@");
  EXPECT_TRUE(syntax.ends_with("SyntaxError: 100%@")) << syntax;
  EXPECT_GT(syntax.size(), std::string("SyntaxError: 100%@").size());
  for (const std::string& text :
       {syntax, errorDescription(JavascriptError::unableToParseJS), errorDescription(StringError::unableToDecodeJSON)})
    EXPECT_EQ(text.find("enum."), std::string::npos) << text;
}

TEST(ErrorCatalogue, AxeErrorsAreTheirSentences) {
  EXPECT_EQ(rawValue(AxeError::cantFullscreenFloatingWindows), "Floating windows don't support fullscreen");
}

} // namespace
} // namespace tabwright::engine
