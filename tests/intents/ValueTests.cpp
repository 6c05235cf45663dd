#include "intents/EntityDefinition.h"
#include "intents/ValueTraits.h"
#include "support/FailureText.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace tabwright::intents {
namespace {

using testsupport::failureText;

enum class Size { small, large };
constexpr auto sizes = enumTable<Size>({{Size::small, "small", "0.5"}, {Size::large, "large"}});
constexpr EnumDeclaration enumDeclaration(Size) {
  return {"Size", tables::enums, sizes};
}

struct Parcel {
  std::string label;
  std::optional<std::string> note;
  Size size = Size::small;
  std::vector<std::string> stamps;
  bool isFragile = false;

  static const EntityDefinition<Parcel>& definition() {
    static const EntityDefinition<Parcel> definition("Parcel",
                                                     {{"label", &Parcel::label, PropertyPresence::needed},
                                                      {"note", &Parcel::note},
                                                      {"size", &Parcel::size},
                                                      {"stamps", &Parcel::stamps},
                                                      {"isFragile", &Parcel::isFragile}},
                                                     [](const Parcel& parcel) { return "Parcel " + parcel.label; });
    return definition;
  }
};

// The value as it reads, written back as JSON, or the complaint.
template <class T>
std::string fromText(std::string_view text) {
  std::string written;
  const std::string failure = failureText([&] {
    written = boost::json::serialize(ValueTraits<T>::toJson(ValueTraits<T>::fromText(text)));
    return 0;
  });
  return written.empty() ? failure : written;
}

template <class T>
std::string fromJson(std::string_view json) {
  std::string written;
  const std::string failure = failureText([&] {
    written = boost::json::serialize(ValueTraits<T>::toJson(ValueTraits<T>::fromJson(boost::json::parse(json))));
    return 0;
  });
  return written.empty() ? failure : written;
}

TEST(Value, TextStaysAsItIs) {
  EXPECT_EQ(fromText<std::string>(" a\n"), R"(" a\n")");
  EXPECT_EQ(fromText<std::string>(""), R"("")");
  EXPECT_EQ(fromJson<std::string>("5"), "can't be 5; give a text.");
}

TEST(Value, BooleansHaveSixSpellingsAsText) {
  for (const std::string_view text : {"true", "YES", "1"})
    EXPECT_EQ(fromText<bool>(text), "true") << text;
  for (const std::string_view text : {"false", "No", "0"})
    EXPECT_EQ(fromText<bool>(text), "false") << text;
  for (const std::string_view text : {"", "2", "on", "truely"})
    EXPECT_EQ(fromText<bool>(text),
              "can't be \"" + std::string(text) + "\"; give true or false (yes, no, 1 and 0 will do).");
  EXPECT_EQ(fromJson<bool>("1"), "can't be 1; give true or false.");
}

TEST(Value, IntegersAreWhole) {
  EXPECT_EQ(fromText<std::int64_t>("-12"), "-12");
  EXPECT_EQ(fromJson<std::int64_t>("3.0"), "3");
  EXPECT_EQ(fromText<std::int64_t>("12 "), "can't be \"12 \"; give a whole number.");
  EXPECT_EQ(fromText<std::int64_t>("9223372036854775808"), "can't be \"9223372036854775808\"; give a whole number.");
  EXPECT_EQ(fromJson<std::int64_t>("2.5"), "can't be 2.5E0; give a whole number.");
}

TEST(Value, EnumsGoByNameOrRawValue) {
  EXPECT_EQ(fromText<Size>("small"), R"("small")");
  EXPECT_EQ(fromText<Size>("0.5"), R"("small")");
  EXPECT_EQ(fromJson<Size>(R"("large")"), R"("large")");
  EXPECT_EQ(fromText<Size>("Small"), "can't be \"Small\"; give one of small, large.");
  EXPECT_EQ(fromJson<Size>("true"), "can't be true; give one of small, large.");
}

TEST(Value, EntityIsReadAndWrittenInDeclaredOrder) {
  EXPECT_EQ(fromJson<Parcel>(R"({"isFragile":true,"label":"A","stamps":["x"],"note":"n"})"),
            R"({"label":"A","note":"n","size":"small","stamps":["x"],"isFragile":true})");
  EXPECT_EQ(fromText<Parcel>(R"([{"label":"A","note":null}])"),
            R"({"label":"A","size":"small","stamps":[],"isFragile":false})")
      << "a list of one is that one";
}

TEST(Value, EntityComplaintsNameThePlace) {
  EXPECT_EQ(fromText<Parcel>("A"), "can't be \"A\"; give one JSON object of the type Parcel.");
  EXPECT_EQ(fromText<Parcel>("[]"), "is an empty list: what should give it has found nothing.");
  EXPECT_EQ(fromText<Parcel>("[{},{}]"), "can't be a list of 2 items; give one JSON object of the type Parcel.");
  EXPECT_EQ(fromJson<Parcel>("{}"), "lacks the property label.");
  EXPECT_EQ(fromJson<Parcel>(R"({"label":null})"), "lacks the property label.");
  EXPECT_EQ(fromJson<Parcel>(R"({"label":"A","size":3})"), "size can't be 3; give one of small, large.");
  EXPECT_EQ(fromJson<Parcel>(R"({"label":"A","stamps":["x",7]})"), "stamps.item 2 can't be 7; give a text.");
  EXPECT_EQ(fromJson<Parcel>(R"({"label":"A","titel":"B"})"),
            "has no property “titel” as a Parcel; its properties are label, note, size, stamps, isFragile.");
}

TEST(Value, WhatCameIsQuotedShortAndWhole) {
  const std::string umlauts = [] {
    std::string text;
    for (int count = 0; count < 40; ++count)
      text += "ä";
    return text;
  }();
  const std::string quoted = fromText<bool>("x" + umlauts);
  EXPECT_EQ(quoted.substr(0, quoted.find(';')), "can't be \"x" + umlauts.substr(0, 58) + "…\"");
}

TEST(Value, FilesCrossWithTheirBytes) {
  for (const std::string& data : {std::string(), std::string("f"), std::string("fo"), std::string("\0\xFF{", 3)}) {
    const IntentFile file{.data = data, .filename = "selection.rtfd", .type = "text/rtf"};
    EXPECT_EQ(propertyFromJson<std::optional<IntentFile>>(ValueTraits<IntentFile>::toJson(file)), file);
  }
  EXPECT_EQ(ValueTraits<IntentFile>::toJson({.data = "foob", .filename = "a", .type = "b"}).at("data"), "Zm9vYg==");
  for (const char* form : {R"({"q":"x"})", R"({"filename":"a","type":"b","path":"/etc/hostname"})",
                           R"({"filename":"a","type":"b","data":"Zm9vYg=="})"})
    EXPECT_EQ(ValueTraits<IntentFile>::fromJson(boost::json::parse(form)).data, form) << "these are fields of a form";
  EXPECT_EQ(ValueTraits<IntentFile>::fromText("{ }").data, "{ }");
  EXPECT_EQ(fromJson<IntentFile>("true"), "can't be true; give a JSON object, a list, or a text.");
}

TEST(Value, TypesHaveNamesForUsers) {
  EXPECT_EQ(ValueTraits<std::vector<Parcel>>::type().name(), "list of Parcel");
  EXPECT_TRUE(ValueTraits<std::optional<Size>>::type().isOptional);
  EXPECT_EQ(ValueTraits<Nothing>::type().name(), "nothing");
}

} // namespace
} // namespace tabwright::intents
