// A text is parsed once, when the file is read, into plain pieces and paths; a step that runs only looks the paths up.
// A path is gone into by the value at hand, member by member, since what a step gives is known then alone: a text on
// the way is tried as JSON. What an evaluation copies is counted as it goes, against one bound.
#include "host/workflow/Expression.h"

#include "platform/TerminalCells.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace tabwright::host::workflow {

namespace json = boost::json;

namespace {

constexpr std::string_view opening = "${";
constexpr std::string_view escaped = "$${";

bool isNameCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_' || character == '-';
}

Path parsePath(std::string_view text, Place place) {
  Path path;
  std::string_view rest = text;
  for (;;) {
    const std::size_t dot = rest.find('.');
    const std::string_view name = rest.substr(0, dot);
    if (!isVariableName(name))
      throw Problem{place,
                    fmt::format("${{{}}} is no path: it is a variable’s name, and perhaps members behind dots, such "
                                "as ${{tabs.0.title}}. $${{ stands for ${{ itself.",
                                text)};
    // The first name is the variable; the others lead into its value.
    if (path.variable.empty())
      path.variable = name;
    else
      path.members.emplace_back(name);
    if (dot == std::string_view::npos)
      return path;
    rest.remove_prefix(dot + 1);
  }
}

std::optional<std::size_t> indexIn(std::string_view member) {
  std::size_t index = 0;
  const auto [end, error] = std::from_chars(member.data(), member.data() + member.size(), index);
  if (error != std::errc() || end != member.data() + member.size())
    return std::nullopt;
  return index;
}

std::optional<json::value> memberOf(const json::value& value, const std::string& member) {
  if (const json::object* object = value.if_object()) {
    const json::value* found = object->if_contains(member);
    return found ? std::optional(*found) : std::nullopt;
  }
  if (const json::string* text = value.if_string()) {
    boost::system::error_code error;
    // Only an object or a list in the text can be gone into; a number in it has no members.
    const json::value held = json::parse(*text, error);
    return !error && held.is_structured() ? memberOf(held, member) : std::nullopt;
  }
  const json::array* list = value.if_array();
  if (!list)
    return std::nullopt;
  // A list has no keys of its own, so the word is free.
  if (member == "count")
    return json::value(list->size());
  const std::optional<std::size_t> index = indexIn(member);
  return index && *index < list->size() ? std::optional((*list)[*index]) : std::nullopt;
}

std::string whyNot(const json::value& value, const std::string& member, const std::string& way) {
  if (const json::array* list = value.if_array())
    return fmt::format("{} is a list of {}: it has no “{}”.", way, list->size(), member);
  if (value.is_object())
    return fmt::format("{} has no member “{}”.", way, member);
  return fmt::format("{} is {}, which has no members.", way, quotedBriefly(json::serialize(value)));
}

json::value valueOf(const Path& path, const Variables& variables, Place place) {
  const auto variable = variables.find(path.variable);
  if (variable == variables.end())
    throw Problem{place, fmt::format("${{{}}} has no value: the step that gives it has not run.", path.variable)};
  json::value value = variable->second;
  std::string way = "${" + path.variable + "}";
  for (const std::string& member : path.members) {
    std::optional<json::value> next = memberOf(value, member);
    if (!next)
      throw Problem{place, whyNot(value, member, way)};
    value = std::move(*next);
    // Before the closing brace: complaints quote the part that could be gone.
    way.insert(way.size() - 1, "." + member);
  }
  return value;
}

} // namespace

std::string Path::text() const {
  std::string text = variable;
  for (const std::string& member : members)
    text += "." + member;
  return text;
}

bool isVariableName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, isNameCharacter);
}

Expression textExpression(std::string_view text, Place place) {
  Expression::Text parsed;
  std::string plain;
  while (!text.empty()) {
    // Before the other mark, which is part of it.
    if (text.starts_with(escaped)) {
      plain += opening;
      text.remove_prefix(escaped.size());
    } else if (text.starts_with(opening)) {
      const std::size_t end = text.find('}');
      if (end == std::string_view::npos)
        throw Problem{place, "“${” has no end: a path stands between ${ and }. $${ stands for ${ itself."};
      if (!plain.empty())
        parsed.pieces.emplace_back(std::exchange(plain, {}));
      parsed.pieces.emplace_back(parsePath(text.substr(opening.size(), end - opening.size()), place));
      text.remove_prefix(end + 1);
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
  // Without a path the text is a value that is known already.
  if (parsed.pieces.empty())
    return {json::value(plain), place};
  if (!plain.empty())
    parsed.pieces.emplace_back(std::move(plain));
  return {std::move(parsed), place};
}

bool beginsWithAt(const Expression& expression) {
  if (const auto* value = std::get_if<boost::json::value>(&expression.form))
    return value->is_string() && value->get_string().starts_with('@');
  const auto* text = std::get_if<Expression::Text>(&expression.form);
  const auto* first = text ? std::get_if<std::string>(&text->pieces.front()) : nullptr;
  return first && first->starts_with('@');
}

void forEachPath(const Expression& expression, const std::function<void(const Path&, Place)>& visit) {
  if (const auto* text = std::get_if<Expression::Text>(&expression.form)) {
    for (const Expression::Piece& piece : text->pieces) {
      if (const Path* path = std::get_if<Path>(&piece))
        visit(*path, expression.place);
    }
  } else if (const auto* list = std::get_if<Expression::List>(&expression.form)) {
    for (const Expression& item : list->items)
      forEachPath(item, visit);
  } else if (const auto* map = std::get_if<Expression::Map>(&expression.form)) {
    for (const auto& [name, member] : map->members)
      forEachPath(member, visit);
  }
}

bool hasPaths(const Expression& expression) {
  bool found = false;
  forEachPath(expression, [&found](const Path&, Place) { found = true; });
  return found;
}

namespace {

std::size_t sizeOf(const json::value& value) {
  // An estimate of its memory, in which the smallest value still costs its node.
  std::size_t size = sizeof value;
  if (const json::string* text = value.if_string())
    return size + text->size();
  if (const json::array* list = value.if_array()) {
    for (const json::value& item : *list)
      size += sizeOf(item);
  } else if (const json::object* object = value.if_object()) {
    for (const auto& [key, member] : *object)
      size += key.size() + sizeOf(member);
  }
  return size;
}

/// One evaluation. Steps that go round could double a value each time, so there is a bound on what it comes to.
class Evaluation {
public:
  Evaluation(const Variables& variables, std::size_t most) : variables_(variables), most_(most) {}

  json::value value(const Expression& expression) {
    if (const auto* text = std::get_if<Expression::Text>(&expression.form))
      return textValue(*text, expression.place);
    if (const auto* list = std::get_if<Expression::List>(&expression.form)) {
      json::array items;
      for (const Expression& item : list->items)
        items.push_back(value(item));
      return items;
    }
    if (const auto* map = std::get_if<Expression::Map>(&expression.form)) {
      json::object members;
      for (const auto& [name, member] : map->members)
        members[name] = value(member);
      return members;
    }
    return std::get<json::value>(expression.form);
  }

private:
  json::value textValue(const Expression::Text& text, Place place) {
    // The only path of a text keeps its value's kind: a list stays one.
    const Path* sole = text.pieces.size() == 1 ? std::get_if<Path>(&text.pieces.front()) : nullptr;
    if (sole) {
      json::value value = valueOf(*sole, variables_, place);
      spend(sizeOf(value), place);
      return value;
    }
    std::string whole;
    for (const Expression::Piece& piece : text.pieces) {
      const Path* path = std::get_if<Path>(&piece);
      const std::string part = path ? textOf(valueOf(*path, variables_, place)) : std::get<std::string>(piece);
      spend(part.size(), place);
      whole += part;
    }
    return json::value(whole);
  }

  void spend(std::size_t size, Place place) {
    if (size > left_)
      throw Problem{place, fmt::format("This comes to more than {} MB, the most that a value may have.", most_ >> 20)};
    left_ -= size;
  }

  const Variables& variables_;
  const std::size_t most_;
  std::size_t left_ = most_;
};

} // namespace

json::value evaluate(const Expression& expression, const Variables& variables, std::size_t most) {
  return Evaluation(variables, most).value(expression);
}

std::string quotedBriefly(const std::string& text) {
  constexpr std::size_t longest = 80;
  // Cut before it is measured, as a page's text may be megabytes.
  return platform::fitted(platform::onOneLine(std::string_view(text).substr(0, longest * 8)), longest);
}

std::string textOf(const json::value& value) {
  const json::string* text = value.if_string();
  return text ? std::string(*text) : json::serialize(value);
}

std::string preview(const Expression& expression, const Variables& variables) {
  if (const auto* text = std::get_if<Expression::Text>(&expression.form)) {
    std::string whole;
    for (const Expression::Piece& piece : text->pieces) {
      const Path* path = std::get_if<Path>(&piece);
      if (!path)
        whole += std::get<std::string>(piece);
      else if (variables.contains(path->variable))
        whole += textOf(valueOf(*path, variables, expression.place));
      else
        whole += "${" + path->text() + "}";
    }
    return whole;
  }
  std::string whole;
  const auto add = [&](const std::string& item) { whole += (whole.empty() ? "" : ", ") + item; };
  if (const auto* list = std::get_if<Expression::List>(&expression.form)) {
    for (const Expression& item : list->items)
      add(preview(item, variables));
    return "[" + whole + "]";
  }
  if (const auto* map = std::get_if<Expression::Map>(&expression.form)) {
    for (const auto& [name, member] : map->members)
      add(name + ": " + preview(member, variables));
    return "{" + whole + "}";
  }
  return textOf(std::get<json::value>(expression.form));
}

} // namespace tabwright::host::workflow
