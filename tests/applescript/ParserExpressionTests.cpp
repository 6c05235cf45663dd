#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

void expectTrees(const std::vector<ParserCase>& cases) {
  for (const ParserCase& each : cases)
    EXPECT_EQ(parsed(each.source), each.expected) << each.source;
}

TEST(ParserExpressions, BindByPrecedence) {
  expectTrees({
      {"1 + 2 * 3", "(+ 1 (* 2 3))"},
      {"1 - 2 - 3", "(- (- 1 2) 3)"},
      {"2 ^ 3 ^ 2", "(^ 2 (^ 3 2))"},
      {"-2 ^ 2", "(^ -2 2)"},
      {"-x ^ 2", "(^ (negate x) 2)"},
      {"- -1", "(negate -1)"},
      {"7 div 2 mod 3", "(mod (div 7 2) 3)"},
      {"a & b + c", "(& a (+ b c))"},
      {"a & b as text", "(as (& a b) class:text'ctxt')"},
      {"a as text & b", "(& (as a class:text'ctxt') b)"},
      {"x as text is \"null\"", "(= (as x class:text'ctxt') \"null\")"},
      {"x as {text, integer}", "(as x (list class:text'ctxt' class:integer'long'))"},
      {"a & b is c", "(= (& a b) c)"},
      {"a < b = c > d", "(= (< a b) (> c d))"},
      {"not a is b and c or d", "(or (and (not (= a b)) c) d)"},
      {"a = not b", "(= a (not b))"},
      {"(1 + 2) * 3", "(* (brackets (+ 1 2)) 3)"},
  });
}

TEST(ParserExpressions, KnowOperatorsInWords) {
  for (const auto& [words, name] : std::vector<ParserCase>{
           {"is", "="},
           {"equals", "="},
           {"is equal to", "="},
           {"≠", "≠"},
           {"/=", "≠"},
           {"is not", "≠"},
           {"isn't", "≠"},
           {"isn’t", "≠"},
           {"is not equal to", "≠"},
           {"does not equal", "≠"},
           {"doesn't equal", "≠"},
           {"is greater than", ">"},
           {"comes after", ">"},
           {"is not less than or equal to", ">"},
           {"is less than", "<"},
           {"comes before", "<"},
           {">=", "≥"},
           {"is greater than or equal to", "≥"},
           {"is not less than", "≥"},
           {"does not come before", "≥"},
           {"<=", "≤"},
           {"is less than or equal to", "≤"},
           {"doesn’t come after", "≤"},
           {"contains", "contains"},
           {"does not contain", "does-not-contain"},
           {"is in", "is-in"},
           {"is contained by", "is-in"},
           {"is not in", "is-not-in"},
           {"isn't contained by", "is-not-in"},
           {"starts with", "begins-with"},
           {"begins with", "begins-with"},
           {"ends with", "ends-with"},
           {"÷", "/"},
           {"×", "*"},
       })
    EXPECT_EQ(parsed("x " + words + " y"), "(" + name + " x y)") << words;
}

TEST(ParserExpressions, ReadLiterals) {
  expectTrees({
      {"1.0E+3", "1000.0"},
      {".5", "0.5"},
      {"9223372036854775807", "9223372036854775807"},
      {"9223372036854775808", "9.223372036854776E+18"},
      {R"("a\"b\\c\nd")", R"("a\"b\\c\nd")"},
      {"\"two\nlines\"", R"("two\nlines")"},
      {"{}", "(list)"},
      {"{1, \"a\", {true}}", "(list 1 \"a\" (list true))"},
      {"{a:1, name:2, |end|:3, class:4}", "(record a:1 name'pnam':2 end:3 class'pcls':4)"},
      {"{missing value, null, pi, return, tab}", "(list missing null pi return tab)"},
      {"{text, Unicode text, list}", "(list class:text'ctxt' class:Unicode text'utxt' class:list'list')"},
      {"«class utf8»", "class:«class utf8»'utf8'"},
      {"«constant ****yes »", "constant:«constant ****yes »'yes '"},
      {"«data utxt00410042»", "«data utxt00410042»"},
      {"«property pnam» of x", "(property «property pnam»'pnam' of x)"},
      {"a -- not this\n# nor this\n(* nor (* this *) *) b ¬\n & c", "a\n(& b c)"},
  });
}

TEST(ParserExpressions, ChainContainers) {
  expectTrees({
      {"a of b in c", "(property a of (property b of c))"},
      {"c's b's a", "(property a of (property b of c))"},
      {"c’s b", "(property b of c)"},
      {"a's b of c", "(property b of (property a of c))"},
      {"tabID of r as text", "(as (property tabID of r) class:text'ctxt')"},
      {"the name of the x", "(property name'pnam' of x)"},
      {"its name & my name", "(& (property name'pnam' of it) (property name'pnam' of me))"},
      {"item i of xs & y", "(& (index item'cobj' at i of xs) y)"},
      {"item -1 of xs", "(index item'cobj' at -1 of xs)"},
      {"item (i + 1) of xs", "(index item'cobj' at (brackets (+ i 1)) of xs)"},
      {"third word of t", "(index word'cwor' at 3 of t)"},
      {"22nd item of xs", "(index item'cobj' at 22 of xs)"},
      {"last item of xs", "(last item'cobj' of xs)"},
      {"front window", "(first window'cwin')"},
      {"some item of middle item of xs", "(some item'cobj' of (middle item'cobj' of xs))"},
      {"words of t", "(every word'cwor' of t)"},
      {"characters 2 thru -1 of t", "(range character'cha ' at 2 thru -1 of t)"},
      {"text 1 through 5 of t", "(range text'ctxt' at 1 thru 5 of t)"},
      {"text from word 1 to end of t", "(range text'ctxt' at (index word'cwor' at 1) thru (place end) of t)"},
      {"end of xs", "(place end of xs)"},
      {"window named \"x\"", "(name window'cwin' at \"x\")"},
      {"window before window 2", "(before window'cwin' of (index window'cwin' at 2))"},
      {"contents of e", "(property contents'pcnt' of e)"},
      {"a reference to item 1 of xs", "(reference-to (index item'cobj' at 1 of xs))"},
      {"AppleScript's text item delimiters", "(property text item delimiters'txdl' of constant:AppleScript'ascr')"},
  });
}

TEST(ParserExpressions, TellCallsFromReferences) {
  expectTrees({
      {"f()", "(call f)"},
      {"f(1, g(2))", "(call f 1 (call g 2))"},
      {"my f(x)", "(call f my x)"},
      {"f(x) of me", "(call f on me x)"},
      {"s's f(x)", "(call f on s x)"},
      {"name of f(x) of s", "(property name'pnam' of (call f on s x))"},
      {"NSString's stringWithString:s", "(message NSString stringWithString:s)"},
      {"obj's setValue:v & w forKey:k", "(message obj setValue:(& v w) forKey:k)"},
      {"C's alloc()'s initWithData:d encoding:e", "(message (call alloc on C) initWithData:d encoding:e)"},
      {"C's x:1 |error|:(missing value)", "(message C x:1 error:(brackets missing))"},
      {"current application's NSDate's |date|()", "(call date on (property NSDate of current-application))"},
      {"my setValue:1 forKey:2", "(message me setValue:1 forKey:2)"},
      {"a's b:c's d is:e", "(message a b:(property d of c) is:e)"},
      {"x's count()", "(call count on x)"},
  });
}

TEST(ParserExpressions, ReadLabelledCallsOfTheScriptsHandlers) {
  const std::string handler = "\non areaOf of r from a out of b given scale:s\nend areaOf";
  const std::string definition = "\non areaOf labelled direct r from:a out of:b scale:s";
  expectTrees({
      {"areaOf of x from 1 out of 2 given scale:3" + handler,
       "(call areaOf labelled of x from:1 out of:2 scale:3)" + definition},
      {"my areaOf of x from y & z with big, red and tall without thin" + handler,
       "(call areaOf my labelled of x from:(& y z) big:true red:true tall:true thin:false)" + definition},
      {"areaOf from 1 given scale:2, depth:3" + handler, "(call areaOf labelled from:1 scale:2 depth:3)" + definition},
      // Without such a handler it is a property.
      {"areaOf of x", "(property areaOf of x)"},
  });
}

TEST(ParserExpressions, ReadCommands) {
  expectTrees({
      {"delay 1 + 2", "(command delay'sysddela' direct (+ 1 2))"},
      {"delay -1", "(command delay'sysddela' direct -1)"},
      {"(random number) - 1", "(- (brackets (command random number'sysvrand')) 1)"},
      {"random number - 1", "(- (command random number'sysvrand') 1)"},
      {"random number from 1 to 6", "(command random number'sysvrand' from:1 to  :6)"},
      {"current date", "(command current date'misccurd')"},
      {"offset of \"a\" in b of c", "(command offset'sysooffs' psof:\"a\" psin:(property b of c))"},
      {"offset of a of b in c", "(command offset'sysooffs' psof:(property a of b) psin:c)"},
      {"round x rounding down", "(command round'sysvrnd ' direct x dire:constant:down'down')"},
      {"count of words of t > 0", "(> (command count'corecnte' direct (every word'cwor' of t)) 0)"},
      {"number of xs", "(command count'corecnte' direct xs)"},
      {"(count xs) is 0", "(= (brackets (command count'corecnte' direct xs)) 0)"},
      {"get name of x", "(command get'coregetd' direct (property name'pnam' of x))"},
      {"exists x", "(command exists'coredoex' direct x)"},
      {"x exists and y", "(and (command exists'coredoex' direct x) y)"},
      {"x does not exist", "(= (command exists'coredoex' direct x) false)"},
      {"application \"X\" is running", "(property running'prun' of (application \"X\"))"},
      {"application \"X\" is not running", "(= (property running'prun' of (application \"X\")) false)"},
      {"set the clipboard to the clipboard & 1",
       "(command set the clipboard to'JonSpClp' direct (& (command the clipboard'JonSgClp') 1))"},
      {"do shell script s without altering line endings", "(command do shell script'sysoexec' direct s alen:false)"},
      {"activate application \"X\"", "(command activate'miscactv' direct (application \"X\"))"},
      {"«event coregetd» x given «class kocl»:y", "(command «event coregetd»'coregetd' direct x kocl:y)"},
  });
}

} // namespace
} // namespace tabwright::applescript::test
