// The library builds the tree; here it gets places, types and bounds. The tree of a file with aliases shares its nodes,
// so a file of a few lines may be without end when it is gone through: nodes are counted as they are visited, and depth
// is bounded.
#include "host/workflow/YamlNode.h"

#include <boost/json/value.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <yaml-cpp/eventhandler.h>

namespace tabwright::host::workflow {

namespace json = boost::json;

namespace {

constexpr int deepest = 64;
constexpr std::size_t mostNodes = 100'000;

// The library's places count from 0 and are negative where it knows none.
Place placeAt(const YAML::Mark& mark, std::size_t length) {
  return {.offset = static_cast<std::size_t>(std::max(mark.pos, 0)),
          .length = length,
          .line = static_cast<std::size_t>(std::max(mark.line, 0)) + 1};
}

/// Hears of a document's parts and remembers where it begins.
class DocumentBeginnings final : public YAML::EventHandler {
public:
  std::vector<YAML::Mark> marks;

  void OnDocumentStart(const YAML::Mark& mark) override { marks.push_back(mark); }
  void OnDocumentEnd() override {}
  void OnNull(const YAML::Mark&, YAML::anchor_t) override {}
  void OnAlias(const YAML::Mark&, YAML::anchor_t) override {}
  void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override {}
  void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override {}
  void OnSequenceEnd() override {}
  void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override {}
  void OnMapEnd() override {}
};

/// Of two documents at most. The library's own way to load all of them never ends where one can't be begun.
std::vector<YAML::Mark> beginningsOfDocuments(const std::string& text) {
  std::istringstream stream(text);
  YAML::Parser parser(stream);
  DocumentBeginnings beginnings;
  if (parser.HandleNextDocument(beginnings))
    parser.HandleNextDocument(beginnings);
  return beginnings.marks;
}

bool isPlain(const YAML::Node& node) {
  // The library gives plain scalars the tag “?” and quoted ones “!”.
  return node.Tag() == "?" || node.Tag().empty();
}

// Words that the library lacks about the line: the two ways in which texts are taken for something else.
std::string_view hintFor(std::string_view source, const YAML::Mark& mark) {
  const auto offset = static_cast<std::size_t>(std::max(mark.pos, 0));
  const std::size_t start = offset == 0 ? 0 : source.rfind('\n', offset - 1) + 1;
  const std::string_view line = source.substr(start, source.find('\n', start) - start);
  const std::size_t colon = line.find(": ");
  if (line.find("${") != std::string_view::npos)
    return " Inside of [] and {}, a text with ${…} stands in quotes.";
  if (colon != std::string_view::npos && line.find(": ", colon + 1) != std::string_view::npos)
    return " A text with a colon and a blank in it stands in quotes, or on lines of its own behind “|”.";
  return "";
}

std::optional<json::value> numberOf(std::string_view text) {
  const bool isSigned = text.starts_with('-') || text.starts_with('+');
  const std::string_view digits = text.substr(isSigned ? 1 : 0);
  if (digits.empty() || digits.front() < '0' || digits.front() > '9')
    return std::nullopt; // .inf, .nan and .5 stay texts: JSON has none of them
  // Telephone numbers and the like, which would lose their zeros.
  if (digits.size() > 1 && digits[0] == '0' && digits[1] >= '0' && digits[1] <= '9')
    return std::nullopt;
  // std::from_chars takes no plus sign.
  const char* const start = text.starts_with('+') ? digits.data() : text.data();
  const char* const end = text.data() + text.size();
  std::int64_t whole = 0;
  if (const auto [rest, error] = std::from_chars(start, end, whole); error == std::errc() && rest == end)
    return json::value(whole);
  double number = 0;
  if (const auto [rest, error] = std::from_chars(start, end, number); error == std::errc() && rest == end)
    return json::value(number);
  return std::nullopt;
}

std::optional<json::value> typed(std::string_view plain) {
  for (const std::string_view yes : {"true", "True", "TRUE"}) {
    if (plain == yes)
      return json::value(true);
  }
  for (const std::string_view no : {"false", "False", "FALSE"}) {
    if (plain == no)
      return json::value(false);
  }
  return numberOf(plain);
}

} // namespace

YAML::Node parseYaml(std::string_view source) {
  try {
    const std::string text(source);
    const std::vector<YAML::Mark> documents = beginningsOfDocuments(text);
    // Two documents at one place: the parser stands still before something that no document begins with.
    if (documents.size() > 1 && documents[0].pos == documents[1].pos)
      throw Problem{placeAt(documents[0], 1), "This is no YAML: the text can’t begin like this."};
    if (documents.size() > 1)
      throw Problem{placeAt(documents[1], 1), "A file holds one workflow: a second document begins here."};
    return YAML::Load(text);
  } catch (const YAML::Exception& error) {
    throw Problem{placeAt(error.mark, 1),
                  fmt::format("This is no YAML: {}.{}", error.msg, hintFor(source, error.mark))};
  }
}

Place placeOf(const YAML::Node& node) {
  return placeAt(node.Mark(), node.IsScalar() && isPlain(node) ? node.Scalar().size() : 1);
}

std::vector<std::pair<YAML::Node, YAML::Node>> membersOf(const YAML::Node& map) {
  std::vector<std::pair<YAML::Node, YAML::Node>> members;
  std::set<std::string> names;
  for (const auto& member : map) {
    if (!member.first.IsScalar())
      throw Problem{placeOf(member.first), fmt::format("The key of a map is a text, not {}.", kindOf(member.first))};
    // YAML wants keys to be unique, and the library doesn't look.
    if (!names.insert(member.first.Scalar()).second)
      throw Problem{placeOf(member.first), fmt::format("“{}” is given twice.", member.first.Scalar())};
    members.emplace_back(member.first, member.second);
  }
  return members;
}

bool isNull(const YAML::Node& node) {
  if (!node.IsDefined() || node.IsNull())
    return true;
  return node.IsScalar() && isPlain(node) &&
         (node.Scalar() == "~" || node.Scalar() == "null" || node.Scalar() == "Null" || node.Scalar() == "NULL");
}

const char* kindOf(const YAML::Node& node) {
  if (isNull(node))
    return "nothing";
  return node.IsSequence() ? "a list" : node.IsMap() ? "a map" : "a text";
}

Expression ExpressionReader::readAsText(const YAML::Node& node) {
  if (node.IsScalar() && !isNull(node))
    return textExpression(node.Scalar(), placeOf(node));
  return read(node, 0);
}

Expression ExpressionReader::read(const YAML::Node& node, int depth) {
  const Place place = placeOf(node);
  if (depth > deepest)
    throw Problem{place, fmt::format("Values are nested more than {} levels deep here.", deepest)};
  // Of the whole file, as one reader reads all of it.
  if (++nodes_ > mostNodes)
    throw Problem{place,
                  fmt::format("The file has more than {} values, those that aliases repeat included.", mostNodes)};
  if (isNull(node))
    return {json::value(nullptr), place};
  if (node.IsSequence()) {
    Expression::List list;
    for (const YAML::Node& item : node)
      list.items.push_back(read(item, depth + 1));
    return {std::move(list), place};
  }
  if (node.IsMap()) {
    Expression::Map map;
    for (const auto& [key, member] : membersOf(node))
      map.members.emplace_back(key.Scalar(), read(member, depth + 1));
    return {std::move(map), place};
  }
  if (isPlain(node)) {
    if (std::optional<json::value> value = typed(node.Scalar()))
      return {std::move(*value), place};
  }
  return textExpression(node.Scalar(), place);
}

} // namespace tabwright::host::workflow
