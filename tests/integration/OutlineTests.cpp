// Outlines of pages in the real Chromium: their names beside those of the browser's own accessibility tree, and
// references that name the element they were given to or none.
#include "RealRoad.h"
#include "devtools/Session.h"
#include "support/SourceFolder.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace tabwright::scripting {
namespace {

using boost::json::value;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using testsupport::failureText;
using Parameters = host::ParameterTexts;
/// Roles and names, and how often each stands there more than on the other side.
using Names = std::map<std::string, int>;

class Outline : public RealRoad {
protected:
  value run(const std::string& action, Parameters parameters = {}) {
    parameters.emplace_back("targetContext", "chromium");
    return perform(action, parameters);
  }
  std::string outline(Parameters parameters = {}) {
    return std::string(run("GetPageOutline", std::move(parameters)).at("text").as_string());
  }
  TabID openPage(const std::string& body) {
    pages_.serve("/page", body);
    return open(pages_.url("/page"));
  }
  std::string referenceOf(const std::string& name) {
    for (const value& element : run("GetPageOutline").at("elements").as_array()) {
      if (element.as_object().contains("reference") && element.as_object().contains("name") &&
          element.at("name").as_string() == name)
        return std::string(element.at("reference").as_string());
    }
    ADD_FAILURE() << "nothing is called " << name;
    return "none";
  }
  std::string click(const std::string& element) {
    return failureText([&] { run("ClickElement", {{"cssSelector", element}}); });
  }

  /// The elements to act on that the browser's own tree and the outline don't agree about.
  Names differences(TabID tab, const std::string& title) {
    static const std::map<std::string, std::string> roles{{"DisclosureTriangle", "summary"}, {"ColorWell", "color"}};
    Names names;
    const auto session =
        devtools::Session::attach(connect(), pageTitled(title), devtools::Session::Kind::page, limits());
    session->call("Accessibility.enable", {}, devtools::Session::AnsweredBy::page, limits());
    const value tree = session->call("Accessibility.getFullAXTree", {}, devtools::Session::AnsweredBy::page, limits());
    for (const value& node : tree.at("nodes").as_array()) {
      if (node.at("ignored").as_bool())
        continue;
      std::string role(node.at("role").at("value").as_string());
      if (const auto known = roles.find(role); known != roles.end())
        role = known->second;
      const value* name = node.as_object().if_contains("name");
      if (actedOn.contains(role))
        ++names[role + " " + (name ? plain(tab, std::string(name->at("value").as_string())) : std::string())];
    }
    for (const value& element : run("GetPageOutline", {{"isInteractiveOnly", "true"}, {"maximumLength", "9999999"}})
                                    .at("elements")
                                    .as_array()) {
      const std::string role(element.at("role").as_string());
      const value* name = element.as_object().if_contains("name");
      if (actedOn.contains(role))
        --names[role + " " + (name ? std::string(name->as_string()) : std::string())];
    }
    std::erase_if(names, [](const auto& entry) { return entry.second == 0; });
    return names;
  }

private:
  // An outline's names are on one line.
  std::string plain(TabID tab, const std::string& name) {
    return std::string(evaluate(tab, "(" + boost::json::serialize(value(name)) +
                                         R"().replace(/[\s\x00-\x1f\u00ad\u200b\u200e\u200f\u202a-\u202e]+/g,
                                           s => /[\s\x00-\x1f]/.test(s) ? ' ' : '').trim())")
                           .as_string());
  }

  const std::set<std::string> actedOn{"button",   "checkbox", "color", "combobox",  "link",   "listbox",
                                      "menuitem", "option",   "radio", "searchbox", "slider", "spinbutton",
                                      "summary",  "switch",   "tab",   "textbox"};
  support::PageServer pages_;
};

TEST_F(Outline, NamesElementsAsTheBrowserItselfDoes) {
  TABWRIGHT_NEEDS_PORT();
  const TabID tab = openPage(testsupport::sourceText("tests/integration/outline/names.html"));
  // Options of a closed list are told in the line of the list.
  EXPECT_EQ(differences(tab, "Demanding"), (Names{{"option France", 1}, {"option Germany", 1}, {"option opt", 1}}));
}

TEST_F(Outline, NamesLinksOfRealPagesAsTheBrowserItselfDoes) {
  TABWRIGHT_NEEDS_PORT();
  for (const char* const page : {"zlib1g-dev/examples/zlib_how.html", "libffi8/html/Index.html",
                                 "python3/python-policy.html", "fish/cmds/math.html"}) {
    const std::string path = std::string("/usr/share/doc/") + page;
    if (!std::filesystem::exists(path))
      continue;
    const TabID tab = open("file://" + path);
    EXPECT_EQ(differences(tab, find(tab)->title), Names{}) << path;
  }
}

TEST_F(Outline, TellsWhatIsThereInReadingOrderAndWhatItCannotSee) {
  openPage(R"(<title>T</title><main><h2><a href=/on>News</a></h2><p>Some <b>text</b></p>
    <input aria-label=Word type=password value=secret><table><tr><td>1<td>2</table><div id=host>s</div>
    <iframe title=Same srcdoc="<button>In</button>"></iframe><iframe title=Other src="data:text/html,x"></iframe>
    <x-shut style="display:block;height:9px"></x-shut></main><script>
    host.attachShadow({ mode: "open" }).innerHTML = "<button>Deep <slot></slot></button>";
    customElements.define("x-shut", class extends HTMLElement {
      constructor() { super(); this.attachShadow({ mode: "closed" }).innerHTML = "<button>no</button>"; } });</script>)");
  const std::string text = outline();
  EXPECT_THAT(text, ContainsRegex(R"(^page "T" http://[^ ]*/page
main
 h2 "News"
  link /on ([a-z]{3})1
 "Some text"
 textbox "Word" ="•••" [a-z]{3}2
 table
  row "1" "2"
 button "Deep s" [a-z]{3}3
 frame "Same"
  button "In" [a-z]{3}4
 frame "Other" data:text/html,x… \(not seen: another origin\)
 closed "x-shut" \(not seen\)$)"));
  EXPECT_THAT(outline({{"belowElement", "h2"}}), AllOf(HasSubstr("News"), Not(HasSubstr("Word"))));
  EXPECT_THAT(outline({{"maximumLength", "30"}}), HasSubstr("(left out: 10 lines more, 4 of them to act on)"));
}

TEST_F(Outline, LeavesNothingThatThePageSees) {
  const TabID tab = openPage("<title>T</title><button>A</button><input value=x>");
  const std::string look = "JSON.stringify([Object.keys(document), Object.getOwnPropertyNames(document), "
                           "document.documentElement.outerHTML, changes])";
  evaluate(tab, "var changes = 0; new MutationObserver(all => changes += all.length)"
                ".observe(document, { attributes: true, childList: true, subtree: true, characterData: true })");
  const value before = evaluate(tab, look);
  outline();
  EXPECT_EQ(evaluate(tab, look), before);
}

TEST_F(Outline, TellsChangesSinceTheLastOne) {
  const TabID tab = openPage("<title>T</title><button>A</button><p id=p>old</p>");
  const Parameters changes{{"isChangesOnly", "true"}};
  EXPECT_THAT(outline(changes), HasSubstr("\"old\""));
  EXPECT_THAT(outline(changes), HasSubstr("(nothing has changed)"));
  evaluate(tab, "p.textContent = 'new'");
  EXPECT_THAT(outline(changes), HasSubstr("\n- \"old\"\n+ \"new\"\n(1 new, 1 gone)"));
}

TEST_F(Outline, ReferencesNameTheirElementOrNone) {
  const TabID tab = openPage(R"html(<title>T</title><button onclick="done('Delete A')">Delete A</button>
    <button onclick="done('twin')">Twin</button><button>Twin</button><div id=host></div>
    <iframe srcdoc="<button onclick='parent.done(1)'>Framed</button>"></iframe><label>Who<input id=who></label>
    <script>var log = []; function done(what) { log.push(what); }
    host.attachShadow({ mode: "open" }).innerHTML = "<button onclick='done(2)'>Deep</button>";</script>)html");
  const std::string reference = referenceOf("Delete A");
  const std::string acted = "no failure";
  const std::string label = "button \"Delete A\"";
  EXPECT_EQ(click(reference), acted);
  EXPECT_EQ(click(label), acted);
  EXPECT_EQ(click(R"({"reference": ")" + reference + R"(", "role": "button"})"), acted);
  EXPECT_EQ(click("\"framed\""), acted);
  EXPECT_EQ(click(referenceOf("Deep")), acted);
  EXPECT_EQ(evaluate(tab, "log.join()"), "Delete A,Delete A,Delete A,1,2");
  EXPECT_EQ(run("SetFormFieldValue",
                {{"targetField", referenceOf("Who")}, {"formFieldSelection", "cssSelector"}, {"newValue", "Ann"}}),
            true);
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "textbox \"Who\""}}), true);
  EXPECT_EQ(evaluate(tab, "who.value"), "Ann");

  EXPECT_THAT(click("button \"Twin\""), ContainsRegex(R"(^2 elements of the page are button "Twin".*[a-z]{3}2)"));
  EXPECT_THAT(click("button \"Delet A\""), HasSubstr("The nearest: " + label + " " + reference));
  // A list that is drawn anew uses its elements for other entries.
  evaluate(tab, "document.querySelector('button').textContent = 'Delete B'");
  EXPECT_THAT(click(reference), AllOf(HasSubstr(label), HasSubstr("button \"Delete B\" now")));
  evaluate(tab, "document.querySelector('button').remove()");
  EXPECT_THAT(click(reference), HasSubstr("is no longer on the page"));
  EXPECT_EQ(evaluate(tab, "log.length"), 5);

  run("ReloadTab");
  awaitLoaded(tab);
  outline();
  EXPECT_THAT(click(reference), HasSubstr("is no reference of this page as it is loaded now"));
  EXPECT_EQ(evaluate(tab, "log.length"), 0);
}

TEST_F(Outline, APageCannotForgeItsLines) {
  openPage(R"(<title>T</title><button>a&#x202e;b" kqz1&#10;button "c</button><p>\"</p><button id=long></button>
    <form><input name=getAttribute><button>Lost</button></form>
    <script>long.textContent = "x".repeat(1000000)</script>)");
  const std::string text = outline();
  EXPECT_THAT(text,
              AllOf(HasSubstr(R"(button "ab\" kqz1 button \"c" )"), HasSubstr(R"("\\\"")"), HasSubstr("xxx…\" ")));
  EXPECT_THAT(text, HasSubstr("button \"Lost\""));
  EXPECT_LT(text.size(), 1000U);
}

TEST_F(Outline, AHugePageIsBoundedAndCounted) {
  openPage(R"(<title>T</title><body><script>for (let i = 0; i < 50000; i += 1)
    document.body.append(document.createElement("p"), Object.assign(document.createElement("button"), {textContent: i}));
    </script>)");
  const value result = run("GetPageOutline");
  EXPECT_LT(result.at("text").as_string().size(), 31'000U);
  EXPECT_GT(result.at("leftOut").as_int64(), 45'000);
}

} // namespace
} // namespace tabwright::scripting
