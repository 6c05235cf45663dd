// One pass over the YAML tree. A problem ends the reading of its step or value only, so that all are told at once; what
// stands inside of it isn't looked at, as it would only repeat the complaint. A tree may be larger than its file, by
// aliases, and deeper than a stack: both are bounded as it is gone through.
#include "host/workflow/WorkflowReader.h"

#include "host/NearestNames.h"
#include "host/workflow/YamlNode.h"
#include "platform/Utf8.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::host::workflow {

namespace {

constexpr std::size_t mostProblems = 20;
constexpr int deepestSteps = 64;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

using Keys = std::vector<std::string>;

struct StepKind {
  std::string key;
  Keys others; ///< that may stand beside it
};

// Of two such keys in a step the first one counts, and the other is refused as one that mustn't stand beside it.
const std::array<StepKind, 7>& stepKinds() {
  static const std::array<StepKind, 7> kinds{{{"action", {"parameters", "as", "name"}},
                                              {"repeat", {"as", "steps", "name"}},
                                              {"if", {"then", "else", "name"}},
                                              {"try", {"otherwise", "name"}},
                                              {"set", {"name"}},
                                              {"append", {"name"}},
                                              {"print", {"name"}}}};
  return kinds;
}

std::string listed(const Keys& names) {
  std::string all;
  for (const std::string& name : names)
    all += (all.empty() ? "" : ", ") + name;
  return all;
}

class Reader {
public:
  Workflow read(std::string_view source) {
    Workflow workflow;
    attempt([&] { workflow = document(parseYaml(source)); });
    if (!problems_.empty())
      throw InvalidWorkflow(std::move(problems_));
    return workflow;
  }

private:
  // Reads one part: its problem is kept, and reading goes on behind it.
  template <class Work>
  void attempt(Work work) {
    // Enough to mend; the rest often follows from the first.
    if (problems_.size() >= mostProblems)
      return;
    try {
      work();
    } catch (const Problem& problem) {
      problems_.push_back(problem);
    }
  }

  // Throws unless the node is a map whose keys are among `known`.
  static void requireMap(const YAML::Node& node, const char* what, const Keys& known) {
    if (!node.IsMap())
      throw Problem{placeOf(node),
                    fmt::format("{} is a map with the keys {}, not {}.", what, listed(known), kindOf(node))};
    for (const auto& [key, value] : membersOf(node)) {
      const std::string& name = key.Scalar();
      if (std::ranges::count(known, name) == 0)
        throw Problem{placeOf(key), fmt::format("{} has no key “{}”.{}", what, name,
                                                didYouMean(name, known, " Its keys are " + listed(known) + "."))};
    }
  }

  static Name nameIn(const YAML::Node& node, const char* what) {
    if (!node.IsScalar() || node.Scalar().empty() || isNull(node))
      throw Problem{placeOf(node), fmt::format("{} is a name, not {}.", what, kindOf(node))};
    return {node.Scalar(), placeOf(node)};
  }

  static Name variableIn(const YAML::Node& node) {
    Name name = nameIn(node, "A variable");
    if (!isVariableName(name.text))
      throw Problem{name.place,
                    fmt::format("“{}” can’t be a variable’s name: it has letters, digits, _ and - only.", name.text)};
    return name;
  }

  std::vector<NamedExpression> valuesIn(const YAML::Node& node, const char* what) {
    if (!node.IsMap())
      throw Problem{placeOf(node), fmt::format("{} is a map of names and values, not {}.", what, kindOf(node))};
    std::vector<NamedExpression> values;
    for (const auto& [key, value] : membersOf(node))
      values.push_back({variableIn(key), expressions_.read(value)});
    return values;
  }

  Workflow document(const YAML::Node& root) {
    requireMap(root, "A workflow", {"title", "variables", "steps"});
    Workflow workflow;
    // A key that isn't there yields a node that isn't defined.
    if (root["title"].IsDefined())
      attempt([&] { workflow.title = nameIn(root["title"], "The title").text; });
    if (root["variables"].IsDefined())
      attempt([&] { workflow.variables = variables(root["variables"]); });
    if (!root["steps"].IsDefined())
      throw Problem{placeOf(root), "A workflow has the key “steps”: a list of what to do."};
    workflow.steps = steps(root["steps"], "“steps”", 0);
    // Steps that could not be read have been complained of already.
    if (workflow.steps.empty() && problems_.empty())
      throw Problem{placeOf(root["steps"]), "There are no steps."};
    return workflow;
  }

  std::vector<NamedExpression> variables(const YAML::Node& node) {
    std::vector<NamedExpression> values = valuesIn(node, "“variables”");
    for (const NamedExpression& one : values) {
      if (hasPaths(one.value))
        throw Problem{one.value.place, "A variable’s first value can’t come from others: a step “set” can do that."};
    }
    return values;
  }

  Steps steps(const YAML::Node& node, const char* what, int depth) {
    if (!node.IsSequence())
      throw Problem{placeOf(node), fmt::format("{} is a list of steps, not {}.", what, kindOf(node))};
    // Aliases can nest a step in itself without end.
    if (depth > deepestSteps)
      throw Problem{placeOf(node), fmt::format("Steps are nested more than {} levels deep here.", deepestSteps)};
    Steps all;
    for (const YAML::Node& item : node)
      attempt([&] { all.push_back(step(item, depth)); });
    return all;
  }

  static const StepKind& kindOfStep(const YAML::Node& node) {
    Keys keys;
    for (const StepKind& kind : stepKinds()) {
      if (node.IsMap() && node[kind.key].IsDefined())
        return kind;
      keys.push_back(kind.key);
    }
    std::string hint;
    // The first key is most likely the one that was to say what the step does.
    if (node.IsMap() && node.size() > 0 && node.begin()->first.IsScalar())
      hint = didYouMean(node.begin()->first.Scalar(), keys, "");
    throw Problem{placeOf(node), fmt::format("A step has one of the keys {}.{}", listed(keys), hint)};
  }

  Step step(const YAML::Node& node, int depth) {
    // An alias is read once for each place where it stands.
    if (++steps_ > mostSteps)
      throw Problem{placeOf(node),
                    fmt::format("The file has more than {} steps, those that aliases repeat included.", mostSteps)};
    const StepKind& kind = kindOfStep(node);
    Keys keys{kind.key};
    keys.insert(keys.end(), kind.others.begin(), kind.others.end());
    // Before the parts are read: a misspelt key is told as one, not as a missing part.
    requireMap(node, ("A step “" + kind.key + "”").c_str(), keys);
    Step step;
    for (const auto& [key, value] : membersOf(node)) {
      // Not the place of the map: that is its first key, which may be the step's name.
      if (key.Scalar() == kind.key)
        step.place = placeOf(key);
    }
    if (node["name"].IsDefined())
      step.title = expressions_.readAsText(node["name"]);
    const YAML::Node main = node[kind.key];
    if (kind.key == "action")
      step.work = action(node);
    else if (kind.key == "repeat")
      step.work = repeat(node, step.place, depth);
    else if (kind.key == "if")
      step.work = branch(node, step.place, depth);
    else if (kind.key == "try")
      step.work = attemptStep(node, depth);
    else if (kind.key == "set")
      step.work = SetStep{valuesIn(main, "“set”")};
    else if (kind.key == "append")
      step.work = append(main);
    else
      step.work = PrintStep{expressions_.read(main)};
    return step;
  }

  ActionStep action(const YAML::Node& node) {
    ActionStep step{.action = nameIn(node["action"], "An action"), .parameters = {}, .result = {}};
    if (const YAML::Node given = node["parameters"]; given.IsDefined() && !isNull(given)) {
      if (!given.IsMap())
        throw Problem{placeOf(given), fmt::format("“parameters” is a map of names and values, not {}.", kindOf(given))};
      for (const auto& [key, value] : membersOf(given))
        step.parameters.push_back({nameIn(key, "A parameter"), expressions_.readAsText(value)});
    }
    if (node["as"].IsDefined())
      step.result = variableIn(node["as"]);
    return step;
  }

  RepeatStep repeat(const YAML::Node& node, Place place, int depth) {
    if (!node["as"].IsDefined() || !node["steps"].IsDefined())
      throw Problem{place, "A step “repeat” has “as”, the variable for the item, and “steps”."};
    return {.list = expressions_.read(node["repeat"]),
            .item = variableIn(node["as"]),
            .steps = steps(node["steps"], "“steps”", depth + 1)};
  }

  IfStep branch(const YAML::Node& node, Place place, int depth) {
    if (!node["then"].IsDefined())
      throw Problem{place, "A step “if” has “then”: the steps for when it holds."};
    return {.condition = condition(node["if"], 0),
            .then = steps(node["then"], "“then”", depth + 1),
            .otherwise = node["else"].IsDefined() ? steps(node["else"], "“else”", depth + 1) : Steps()};
  }

  TryStep attemptStep(const YAML::Node& node, int depth) {
    return {.steps = steps(node["try"], "“try”", depth + 1),
            .otherwise = node["otherwise"].IsDefined() ? steps(node["otherwise"], "“otherwise”", depth + 1) : Steps()};
  }

  AppendStep append(const YAML::Node& node) {
    std::vector<NamedExpression> values = valuesIn(node, "“append”");
    if (values.size() != 1)
      throw Problem{placeOf(node), "“append” names one list, and the value to add to it."};
    return {std::move(values.front())};
  }

  Condition condition(const YAML::Node& node, int depth) {
    if (depth > deepestSteps)
      throw Problem{placeOf(node), fmt::format("Conditions are nested more than {} levels deep here.", deepestSteps)};
    if (!node.IsMap())
      return {.kind = Condition::Kind::isTrue, .value = expressions_.read(node), .other = {}, .parts = {}};
    requireMap(node, "A condition", {"value", "equals", "contains", "not", "all", "any"});
    // Each form has its keys and no others; a mixture falls through to the complaint.
    if (node["not"].IsDefined() && node.size() == 1)
      return {.kind = Condition::Kind::no, .value = {}, .other = {}, .parts = {condition(node["not"], depth + 1)}};
    for (const auto& [key, kind] : {std::pair{"all", Condition::Kind::all}, std::pair{"any", Condition::Kind::any}}) {
      if (!node[key].IsDefined() || node.size() != 1 || !node[key].IsSequence())
        continue;
      Condition whole{.kind = kind, .value = {}, .other = {}, .parts = {}};
      for (const YAML::Node& part : node[key])
        whole.parts.push_back(condition(part, depth + 1));
      return whole;
    }
    for (const auto& [key, kind] :
         {std::pair{"equals", Condition::Kind::equals}, std::pair{"contains", Condition::Kind::contains}}) {
      if (node[key].IsDefined() && node["value"].IsDefined() && node.size() == 2)
        return {.kind = kind,
                .value = expressions_.read(node["value"]),
                .other = expressions_.read(node[key]),
                .parts = {}};
    }
    throw Problem{placeOf(node), "A condition is a value, or a map: value and equals, value and contains, not with a "
                                 "condition, all or any with a list of conditions."};
  }

  static constexpr std::size_t mostSteps = 10'000;

  ExpressionReader expressions_;
  std::vector<Problem> problems_;
  std::size_t steps_ = 0;
};

} // namespace

Workflow readWorkflow(std::string_view source) {
  // The library would skip it, and all places behind it would be wrong by its length.
  if (source.starts_with(byteOrderMark))
    throw InvalidWorkflow(std::vector{Problem{{}, "The file begins with a byte order mark, which it must not have."}});
  if (const auto place = platform::malformedByte(source)) {
    const auto line = static_cast<std::size_t>(std::ranges::count(source.substr(0, *place), '\n')) + 1;
    throw InvalidWorkflow(
        std::vector{Problem{{*place, 1, line}, "The file is text in UTF-8, but a byte here belongs to no character."}});
  }
  return Reader().read(source);
}

} // namespace tabwright::host::workflow
