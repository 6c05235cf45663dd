#include "support/FailureText.h"
#include "support/ModelBrowserProbe.h"
#include "support/ScratchFolder.h"
#include "targets/BrowserTargetContextsProvider.h"
#include "targets/MachineProbe.h"
#include "targets/SupportedBrowsers.h"
#include "targets/TargetContextManager.h"
#include "targets/TargetContextQuery.h"
#include "targets/TargetContextValue.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace tabwright::targets {
namespace {

using testsupport::failureText;
using testsupport::ModelBrowserProbe;
using Traits = intents::ValueTraits<TargetContext>;

const TargetContext chromium{"org.chromium.chromium", "Chromium"};
const TargetContext safari{"com.apple.safari", "Safari"};
const TargetContext vivaldi{"com.vivaldi.vivaldi", "Vivaldi"};

TEST(SupportedBrowsers, StandInTheirFixedOrder) {
  EXPECT_EQ(supportedBrowsers(), (std::vector<TargetContext>{{"com.brave.browser", "Brave Browser"},
                                                             chromium,
                                                             {"com.google.chrome", "Google Chrome"},
                                                             {"com.microsoft.edgemac", "Microsoft Edge"},
                                                             safari,
                                                             vivaldi}));
}

TEST(TargetContext, IdentityCoversTheName) {
  EXPECT_NE(chromium, (TargetContext{chromium.id, "Chromium Browser"}));
  EXPECT_NE(std::hash<TargetContext>{}(chromium), std::hash<TargetContext>{}({chromium.id, "Chromium Browser"}));
}

TEST(TargetContext, IsReadFromWhateverAUserCallsIt) {
  for (const std::string_view text :
       {"chromium", "Chromium", "org.chromium.chromium", "org.chromium.Chromium", R"("chromium")",
        R"({"id":"org.chromium.Chromium"})", R"({"id":"chromium"})", R"({"id":"org.chromium.chromium","name":null})"})
    EXPECT_EQ(Traits::fromText(text), chromium) << text;
  for (const std::string_view text :
       {"frontmost", ".focussed", "Frontmost Browser", R"({"id":".focussed","name":"the one in front"})"})
    EXPECT_EQ(Traits::fromText(text), engine::frontmostTargetContext()) << text;
  EXPECT_EQ(Traits::fromText("google chrome").id, "com.google.chrome");
}

TEST(TargetContext, MayNameAProfile) {
  const TargetContext work = Traits::fromText("chromium/Work");
  EXPECT_EQ(work, (TargetContext{"org.chromium.chromium/work", "Chromium/Work"}));
  EXPECT_EQ(Traits::fromJson(Traits::toJson(work)), work);
  EXPECT_EQ(Traits::fromText("Google Chrome/Profile 1").id, "com.google.chrome/profile 1");
  EXPECT_EQ(findTargetContext(shortNameOf(work))->id, work.id);
  for (const std::string_view text : {"chromium/", "chromium/a/b", "chromium/a\"b", "chromium/a:8", "frontmost/Work",
                                      R"({"id":"org.chromium.chromium/a\"b"})", R"({"id":"org.example.reader/"})"})
    EXPECT_NE(failureText([&] { return Traits::fromText(text); }), "") << text;
}

TEST(TargetContext, CrossesAsAnObjectBothWays) {
  for (const TargetContext& context : {chromium, TargetContext{chromium.id, "Chromium Nightly"},
                                       TargetContext{"org.example.reader", "Reader"}, engine::frontmostTargetContext()})
    EXPECT_EQ(Traits::fromJson(Traits::toJson(context)), context);
}

TEST(TargetContext, RefusalsNameTheChoices) {
  const std::string choices =
      "; give one of frontmost, brave, chromium, chrome, edge, safari, vivaldi, or an object with an id.";
  EXPECT_EQ(failureText([] { return Traits::fromText("firefox"); }), "can't be \"firefox\"" + choices);
  for (const std::string_view id : {"", "a b", R"(a\"b)", R"(a\\b)", R"(a\nb)", "ä"})
    EXPECT_THAT(failureText([&] { return Traits::fromText(R"({"name":"x","id":")" + std::string(id) + "\"}"); }),
                testing::HasSubstr("; give a bundle identifier"))
        << id;
  EXPECT_EQ(failureText([] { return Traits::fromText("7"); }), "can't be 7" + choices);
  EXPECT_EQ(failureText([] { return Traits::fromText("{}"); }), "lacks the property id.");
}

TEST(TargetContextManager, SectionsComeInOrderAndMayBeEmpty) {
  const ModelBrowserProbe bare{{}, {}};
  const auto sections = TargetContextManager(bare).sections({});
  ASSERT_EQ(sections.size(), 3U);
  EXPECT_EQ(sections[0].label, "Dynamic");
  EXPECT_EQ(sections[0].items, std::vector{engine::frontmostTargetContext()});
  EXPECT_EQ(sections[1].label, "Running browsers");
  EXPECT_TRUE(sections[1].items.empty());
  EXPECT_EQ(sections[2].label, "Installed browsers");
  EXPECT_TRUE(sections[2].items.empty());

  const auto some = TargetContextManager(bare).sections({.dynamic = false, .running = false, .installed = true});
  ASSERT_EQ(some.size(), 1U);
  EXPECT_EQ(some[0].label, "Installed browsers");
}

TEST(TargetContextManager, InstalledIsLookedForOnceAndRunningEachTime) {
  ModelBrowserProbe probe{{"vivaldi", "chromium"}, {"vivaldi"}};
  const TargetContextManager manager(probe);
  EXPECT_EQ(manager.installedBrowsers(), (std::vector{chromium, vivaldi}));
  EXPECT_EQ(manager.runningBrowsers(), std::vector{vivaldi});
  probe.installed = {};
  probe.running = {"vivaldi", "chromium"};
  EXPECT_EQ(manager.installedBrowsers(), (std::vector{chromium, vivaldi}));
  EXPECT_EQ(manager.runningBrowsers(), (std::vector{chromium, vivaldi}));
}

TEST(TargetContextManager, InstalledBrowsersAreThoseOfTheTableByNameToo) {
  ModelBrowserProbe probe{{"vivaldi"}, {}};
  probe.otherInstalled = {{"org.zebra", "zebra"},
                          {"org.ez", "Éz"},
                          {"org.elan", "élan"},
                          {"com.Google.Chrome", "Google Chrome"},
                          {"org.chromium.Chromium", "Chromium Nightly"},
                          {"org.Aardvark", "Aardvark"},
                          {"com.google.chrome", "Google Chrome"}};
  const TargetContextManager manager(probe);
  EXPECT_EQ(manager.installedApps(), (std::vector<TargetContext>{{"org.aardvark", "Aardvark"},
                                                                 {"org.chromium.chromium", "Chromium Nightly"},
                                                                 {"com.google.chrome", "Google Chrome"},
                                                                 vivaldi,
                                                                 {"org.zebra", "zebra"},
                                                                 {"org.elan", "élan"},
                                                                 {"org.ez", "Éz"}}));
  EXPECT_EQ(manager.installedBrowsers(), (std::vector<TargetContext>{{"com.google.chrome", "Google Chrome"}, vivaldi}));
}

TEST(TargetContextManager, RunningBrowsersAreSupportedNamedAndOncePerName) {
  ModelBrowserProbe probe{{}, {"vivaldi", "chromium"}};
  probe.otherRunning = {
      {"org.editor", "Editor", 1}, {"COM.Brave.Browser", "brave beta", 2},   {"com.apple.safari", " \n", 3},
      {"\t", "Nameless", 4},       {"org.chromium.chromium", "Chromium", 5}, {"com.vivaldi.vivaldi", "A", 6}};
  EXPECT_EQ(TargetContextManager(probe).runningBrowsers(),
            (std::vector<TargetContext>{
                {"com.vivaldi.vivaldi", "A"}, {"com.brave.browser", "brave beta"}, chromium, vivaldi}));
}

TEST(TargetContextManager, FindsApplicationsThatRun) {
  ModelBrowserProbe probe{{"chromium"}, {}};
  probe.otherRunning = {{"org.Editor", "Editor", 1},
                        {"org.chromium.Chromium", "Chromium", 2, true},
                        {"org.chromium.chromium", "Chromium", 3}};
  const TargetContextManager manager(probe);
  EXPECT_EQ(manager.findApplication("org.chromium.chromium").value().process, 2);
  EXPECT_EQ(manager.findApplication("org.editor").value().process, 1);
  EXPECT_EQ(manager.findApplication(".focussed").value().process, 2);
  EXPECT_EQ(manager.findApplication("editor").value().process, 1);
  EXPECT_FALSE(manager.findApplication("chromium")) << "which of two isn't said";
  EXPECT_FALSE(manager.findApplication("org"));
  EXPECT_FALSE(manager.findApplication(""));
  EXPECT_FALSE(manager.findApplication(safari.id));
  probe.otherRunning = {};
  EXPECT_FALSE(manager.findApplication(chromium.id)) << "installed is not running";
  EXPECT_FALSE(manager.findApplication(".focussed"));
}

TEST(TargetContextQuery, FindsARunningBrowserInTwoSections) {
  const ModelBrowserProbe probe{{"chromium", "vivaldi"}, {"chromium"}};
  const TargetContextManager manager(probe);
  const TargetContextQuery query(manager);
  EXPECT_EQ(query.entities(std::vector<std::string>{chromium.id}), (std::vector{chromium, chromium}));
  EXPECT_EQ(query.entities(std::vector<std::string>{".focussed", vivaldi.id}),
            (std::vector{engine::frontmostTargetContext(), vivaldi}));
  EXPECT_TRUE(query.entities(std::vector<std::string>{safari.id}).empty());
}

TEST(MachineProbe, NamesInstalledBrowsersAsTheTableDoes) {
  const testsupport::ScratchFolder entries;
  std::ofstream(entries.path() / "vivaldi-stable.desktop") << "[Desktop Entry]\nType=Application\nName=V\nExec=v\n";
  const MachineProbe probe([] { return std::vector<RunningApplication>{{"org.editor", "Editor", 7, true}}; },
                           {.path = "", .applicationFolders = {entries.path()}});
  const TargetContextManager manager(probe);
  EXPECT_EQ(manager.installedBrowsers(), std::vector{vivaldi});
  EXPECT_TRUE(manager.runningBrowsers().empty());
  EXPECT_EQ(manager.findApplication(".focussed").value().localizedName, "Editor");
}

TEST(BrowserTargetContextsProvider, OffersTitlesAndTextsThatReadAsTheValue) {
  const ModelBrowserProbe probe{{"chrome"}, {"edge"}};
  const TargetContextManager manager(probe);
  const BrowserTargetContextsProvider provider(manager);
  const auto sections = provider.results();
  ASSERT_EQ(sections.size(), 3U);
  EXPECT_EQ(sections[1].options.at(0).title, "Microsoft Edge");
  EXPECT_EQ(provider.defaultResult()->value, Traits::toJson(engine::frontmostTargetContext()));
  for (const auto& section : sections) {
    for (const auto& option : section.options)
      EXPECT_EQ(Traits::toJson(Traits::fromText(option.text)), option.value) << option.text;
  }
}

} // namespace
} // namespace tabwright::targets
