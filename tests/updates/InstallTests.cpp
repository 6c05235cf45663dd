// From the feed to the folder in its place, with a server of updates on this machine. Whatever is wrong, the copy that
// is installed stays as it is, and nothing is left behind.
#include "UpdateFixture.h"
#include "support/FailureText.h"
#include "support/SourceFolder.h"
#include "updates/Archive.h"
#include "updates/ProgramRun.h"
#include "updates/Signature.h"
#include "updates/UpdateFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::updates {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testsupport::failureName;
using testsupport::failureText;

/// A clock that moves on at each look.
class HastyDeadlines final : public platform::DeadlineClock {
public:
  explicit HastyDeadlines(std::chrono::seconds step) : step_(step) {}
  [[nodiscard]] std::chrono::steady_clock::time_point now() const override {
    return std::chrono::steady_clock::time_point(step_ * ++looks_);
  }
  bool wait(std::condition_variable_any&, platform::MutexLock<platform::Mutex>&, const platform::CallLimits&,
            const std::function<bool()>& isOver) override {
    return isOver();
  }

private:
  const std::chrono::seconds step_;
  mutable std::atomic<int> looks_ = 0;
};

platform::CallLimits hastyLimits(std::chrono::seconds step) {
  platform::CallLimits limits;
  limits.clock = std::make_shared<HastyDeadlines>(step);
  return limits;
}

using Entry = std::pair<const std::string, std::string>;

class Installing : public UpdateFixture {
protected:
  Installing() { before = tree(scratch.path()); }

  std::string failureOfUpdate(const RenamePath& rename = renamePath) {
    const std::string name = failureName([&] {
      update(rename);
      return 0;
    });
    EXPECT_EQ(tree(scratch.path()), before);
    return name;
  }

  std::map<std::string, std::string> before;
};

TEST_F(Installing, PutsASignedUpdateInPlaceAndKeepsTheFormerCopy) {
  std::vector<TestEntry> entries = programEntries("0.2.0");
  entries.push_back({"tabwright/bin/tabwright-link", AE_IFLNK, "../share/doc/notes"});
  entries.push_back({"tabwright/share/doc/same", AE_IFREG, "tabwright/share/doc/notes", 0644, /*isHardLink=*/true});
  entries.push_back({"./tabwright/share/tool", AE_IFREG, "tool", 06777});
  serveUpdate("0.2.0", tarGz(entries));
  const auto former = tree(copy());
  ::chmod(copy().c_str(), 0750);
  update();
  EXPECT_EQ(tree(copy().string() + ".old"), former);
  const auto now = tree(copy());
  EXPECT_THAT(now, IsSupersetOf<Entry>({{"bin/tabwright", "client 0.2.0"},
                                        {"bin/tabwright-link", "-> ../share/doc/notes"},
                                        {"share/doc/same", "notes 0.2.0"}}));
  struct stat facts{};
  ASSERT_EQ(::stat((copy() / "share/tool").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0755u);
  ASSERT_EQ(::stat(copy().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0750u);
  EXPECT_THAT(tree(scratch / "tmp"), IsEmpty());

  serveUpdate("0.3.0", tarGz(programEntries("0.3.0")));
  testsupport::ScratchFolder::write(scratch / "apps/tabwright.new-Ab12Cd/bin/tabwright",
                                    "of a process that was killed");
  update();
  EXPECT_EQ(tree(copy()).at("bin/tabwright"), "client 0.3.0");
  EXPECT_EQ(tree(copy().string() + ".old"), now);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch / "apps"), {}), 2);
}

TEST_F(Installing, RefusesWhatIsNotSignedByTheMakers) {
  const std::string archive = tarGz(programEntries("0.2.0"));
  server.serve("/archive.tar.gz", archive, "application/gzip");
  serveFeed(item("0.2.0", archive.size(), ""));
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.unsignedArchive");
  serveFeed("<item><sparkle:version>0.2.0</sparkle:version></item>");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.unsignedArchive");
  const std::string good = key.sign(archive);
  for (const std::string& signature :
       {SigningKey(8).sign(archive), key.sign(archive + " "), key.sign(""), good.substr(1), good + "AAAA", "x" + good,
        good.substr(0, 86) + "AA", std::string(88, 'A'), std::string(88, '=')}) {
    serveFeed(item("0.2.0", archive.size(), signature));
    EXPECT_EQ(failureOfUpdate(), "UpdateFault.wronglySigned") << signature;
  }
  std::string changed = archive;
  changed[archive.size() / 2] ^= 1;
  serveFeed(item("0.2.0", archive.size(), good));
  server.serve("/archive.tar.gz", changed, "application/gzip");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.wronglySigned");

  UpdateFacts keyless = facts();
  keyless.key = "AAAA";
  EXPECT_EQ(failureName([&] { return installUpdate(keyless, checkForUpdate(keyless, {}), {}); }),
            "UpdateFault.unusableKey");
}

TEST_F(Installing, NeverGoesBack) {
  for (const char* version : {"0.1.0.1", "0.1.0", "0.0.9", "0.1.0.1b2"}) {
    serveUpdate(version, tarGz(programEntries("0.0.9")));
    EXPECT_FALSE(checkForUpdate(facts(), {}).update) << version;
  }
  // An old archive, signed at its time, under a new label.
  serveUpdate("0.9.0", tarGz(programEntries("0.0.9")));
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.unfitProgram");
}

TEST_F(Installing, TakesWhatWasAnnouncedAndNoMore) {
  const std::string archive = tarGz(programEntries("0.2.0"));
  serveFeed(item("0.2.0", archive.size(), key.sign(archive)));
  const std::string head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
  server.serve("/archive.tar.gz", archive.substr(1));
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.truncated");
  server.serveRaw("/archive.tar.gz",
                  fmt::format("{}Content-Length: {}\r\n\r\n", head, archive.size()) + archive.substr(1));
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.truncated");
  server.serveRaw("/archive.tar.gz", head + "\r\n");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.truncated");
  server.serve("/archive.tar.gz", archive + "x");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.tooLong");
  server.serveEndlessly("/archive.tar.gz", head + "\r\n", archive);
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.tooLong");
  server.serveRaw("/archive.tar.gz", "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\nConnection: close\r\n\r\ngone");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.refused");
  server.serveRaw("/archive.tar.gz", "no answer at all");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.unreachable");
}

TEST_F(Installing, WaitsForNoServerForEver) {
  const platform::CallLimits hasty = hastyLimits(std::chrono::minutes(4));
  server.neverAnswer("/appcast.xml");
  EXPECT_EQ(failureName([&] { return checkForUpdate(facts(), hasty); }), "UpdateFault.timedOut");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(failureName([&] { return checkForUpdate(facts(), {.stop = stop.get_token()}); }), "UpdateFault.stopped");

  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  const UpdateCheck check = checkForUpdate(facts(), {});
  server.neverAnswer("/archive.tar.gz");
  EXPECT_EQ(failureName([&] { return installUpdate(facts(), check, hasty); }), "UpdateFault.timedOut");
  EXPECT_EQ(tree(scratch.path()), before);
}

TEST_F(Installing, RefusesFeedsThatAreNone) {
  const std::string head = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
  const auto feedFailure = [&] { return failureName([&] { return checkForUpdate(facts(), {}); }); };
  server.serve("/appcast.xml", "<html><body>Log in first</body></html>");
  EXPECT_EQ(feedFailure(), "UpdateFault.malformedFeed");
  server.serve("/appcast.xml", "\x1f\x8b\x08 binary");
  EXPECT_EQ(feedFailure(), "UpdateFault.malformedFeed");
  server.serveEndlessly("/appcast.xml", head, "<rss version='2.0'><channel>");
  EXPECT_EQ(feedFailure(), "UpdateFault.tooLong");
  server.serveRaw("/appcast.xml", "HTTP/1.1 500 Oops\r\nConnection: close\r\n\r\n" + std::string(5000, 'x'));
  EXPECT_EQ(feedFailure(), "UpdateFault.refused");
}

TEST_F(Installing, TakesSecureAddressesOnly) {
  const auto redirectTo = [&](const std::string& path, const std::string& target) {
    server.serveRaw(path,
                    "HTTP/1.1 302 Found\r\nLocation: " + target + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  };
  const auto feedFailure = [&](const std::string& feed) {
    UpdateFacts other = facts();
    other.feed = feed;
    return failureName([&] { return checkForUpdate(other, {}); });
  };
  for (const char* feed : {"http://updates.example/appcast.xml", "http://127.0.0.1.example/a",
                           "http://127.0.0.1@updates.example/a", "ftp://127.0.0.1/a", "file:///etc/passwd",
                           "updates.example/appcast.xml", "", "http://128.0.0.1/a", "HTTP://localhost.example/a"})
    EXPECT_EQ(feedFailure(feed), "UpdateFault.insecureAddress") << feed;

  const std::string archive = tarGz(programEntries("0.2.0"));
  serveUpdate("0.2.0", archive);
  redirectTo("/moved.xml", "/appcast.xml");
  EXPECT_EQ(feedFailure(server.url("/moved.xml")), "no failure");
  for (const char* target : {"http://updates.example/appcast.xml", "file:///etc/passwd"}) {
    redirectTo("/moved.xml", target);
    EXPECT_EQ(feedFailure(server.url("/moved.xml")), "UpdateFault.insecureAddress") << target;
  }
  redirectTo("/moved.xml", "/moved.xml");
  EXPECT_EQ(feedFailure(server.url("/moved.xml")), "UpdateFault.unreachable");

  redirectTo("/archive.tar.gz", "http://updates.example/a.tar.gz");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.insecureAddress");
  serveFeed("<item><sparkle:version>2</sparkle:version><enclosure url='http://updates.example/a' length='3' "
            "sparkle:edSignature='x'/></item>");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.insecureAddress");
}

TEST_F(Installing, UnpacksNothingElsewhere) {
  const std::string elsewhere = (scratch / "elsewhere").string();
  struct Row {
    TestEntry entry;
    std::string fault;
  };
  for (const Row& row : std::vector<Row>{
           {{"tabwright/../../elsewhere", AE_IFREG, "x"}, "unsafeArchive"},
           {{"../elsewhere", AE_IFREG, "x"}, "unsafeArchive"},
           {{elsewhere, AE_IFREG, "x"}, "unsafeArchive"},
           {{"other/file", AE_IFREG, "x"}, "unsafeArchive"},
           {{"tabwright", AE_IFREG, "x"}, "unsafeArchive"},
           {{"tabwright/out", AE_IFLNK, elsewhere}, "unsafeArchive"},
           {{"tabwright/out", AE_IFLNK, "../tabwright"}, "unsafeArchive"},
           {{"tabwright/share/out", AE_IFLNK, "../../.."}, "unsafeArchive"},
           {{"tabwright/nowhere", AE_IFLNK, "missing"}, "unsafeArchive"},
           {{"tabwright/circle", AE_IFLNK, "circle"}, "unsafeArchive"},
           {{"tabwright/out", AE_IFREG, "../apps/tabwright/bin/tabwright", 0644, true}, "unsafeArchive"},
           {{"tabwright/out", AE_IFREG, "tabwright/missing", 0644, true}, "unsafeArchive"},
           {{"tabwright/bin/tabwright", AE_IFREG, "again"}, "unsafeArchive"},
           {{"tabwright/bin/tabwright/x", AE_IFREG, "x"}, "unsafeArchive"},
           {{"tabwright/pipe", AE_IFIFO, ""}, "unsafeArchive"},
           {{"tabwright/device", AE_IFCHR, ""}, "unsafeArchive"},
       }) {
    std::vector<TestEntry> entries = programEntries("0.2.0");
    entries.push_back(row.entry);
    serveUpdate("0.2.0", tarGz(entries));
    EXPECT_EQ(failureOfUpdate(), "UpdateFault." + row.fault) << row.entry.name << " " << row.entry.content;
  }
  // A way out in two steps: a link, and a file behind it, or a link that only together with another leads out.
  for (const auto& [first, second] : std::vector<std::pair<TestEntry, TestEntry>>{
           {{"tabwright/out", AE_IFLNK, "../.."}, {"tabwright/out/elsewhere", AE_IFREG, "x"}},
           {{"tabwright/out/elsewhere", AE_IFREG, "x"}, {"tabwright/out", AE_IFLNK, "../.."}},
           {{"tabwright/out", AE_IFLNK, "."}, {"tabwright/further", AE_IFLNK, "out/.."}},
           {{"tabwright/out", AE_IFLNK, ".."}, {"tabwright/out/link", AE_IFLNK, "share"}}}) {
    std::vector<TestEntry> entries = programEntries("0.2.0");
    entries.push_back(first);
    entries.push_back(second);
    serveUpdate("0.2.0", tarGz(entries));
    EXPECT_EQ(failureOfUpdate(), "UpdateFault.unsafeArchive") << second.name;
  }
}

TEST_F(Installing, RefusesWhatDoesNotRunHere) {
  const std::string whole = tarGz(programEntries("0.2.0"));
  for (const std::string& broken : {whole.substr(0, whole.size() / 2), std::string("no archive"), tarGz({})}) {
    serveUpdate("0.2.0", broken);
    EXPECT_EQ(failureOfUpdate(), "UpdateFault.brokenArchive");
  }
  const auto withHost = [](const std::string& script, unsigned permissions) {
    std::vector<TestEntry> entries = programEntries("0.2.0");
    entries[2].content = script;
    entries[2].permissions = permissions;
    return tarGz(entries);
  };
  for (const std::string& unfit : {withHost("#!/bin/sh\nexit 127\n", 0755), withHost("#!/bin/sh\necho 0.2.0\n", 0755),
                                   withHost("#!/bin/sh\n", 0644), withHost("#!/bin/sh\necho tabwright newest\n", 0755),
                                   withHost("#!/nowhere\n", 0755), tarGz({{"tabwright/bin/x", AE_IFREG, "x"}})}) {
    serveUpdate("0.2.0", unfit);
    EXPECT_EQ(failureOfUpdate(), "UpdateFault.unfitProgram");
  }
  serveUpdate("0.2.0", withHost("#!/bin/sh\nwhile :; do :; done\n", 0755));
  const UpdateCheck check = checkForUpdate(facts(), {});
  EXPECT_EQ(failureName([&] { return installUpdate(facts(), check, hastyLimits(std::chrono::seconds(1))); }),
            "UpdateFault.unfitProgram");
  EXPECT_EQ(tree(scratch.path()), before);
}

TEST_F(Installing, GoesBackWhenAStepFailsHalfWay) {
  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  for (int failing = 1; failing <= 2; ++failing) {
    int step = 0;
    const auto rename = [&](const std::filesystem::path& from, const std::filesystem::path& to) {
      return ++step == failing ? EIO : renamePath(from, to);
    };
    EXPECT_EQ(failureOfUpdate(rename), "FileFailure.rename") << failing;
    EXPECT_EQ(step, failing == 1 ? 1 : 3); // the third puts the old folder back
  }
}

TEST_F(Installing, LeavesAloneWhatIsNotItsOwn) {
  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  testsupport::ScratchFolder::write(scratch / "apps/tabwright.old/letters", "mine");
  before = tree(scratch.path());
  EXPECT_EQ(failureOfUpdate(), "FileFailure.keep the former program as");

  const platform::FileDescriptor other(::open(copy().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(::flock(other.number(), LOCK_EX), 0);
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.busy");
}

TEST_F(Installing, LeavesTheCopiesOfOthersToThem) {
  serveUpdate("0.2.0", tarGz(programEntries("0.2.0")));
  testsupport::ScratchFolder::write(copy() / "workflows/mine.yaml", "mine");
  before = tree(scratch.path());
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.notOurs");
  EXPECT_THAT(findInstallation(copy() / hostPath, {}).obstacle, HasSubstr("holds “workflows”"));
  std::filesystem::remove_all(copy() / "workflows");
  testsupport::ScratchFolder::write(copy() / "bin/ls", "");
  EXPECT_THAT(findInstallation(copy() / hostPath, {}).obstacle, HasSubstr("holds “bin/ls”"));
  std::filesystem::remove(copy() / "bin/ls");
  EXPECT_EQ(findInstallation(copy() / hostPath, {}).kind, Installation::Kind::archive);
  for (const char* name : {"apps/.local", "apps/usr", "apps/tabwright.old"}) {
    std::filesystem::copy(copy(), scratch / name, std::filesystem::copy_options::recursive);
    EXPECT_EQ(findInstallation(scratch / name / hostPath, {}).kind, Installation::Kind::other) << name;
  }
  EXPECT_EQ(findInstallation("", {}).kind, Installation::Kind::other);

  // A package manager that knows the file, and one that doesn't.
  const std::string program = (copy() / hostPath).string();
  writeFile(scratch / "programs/dpkg", "#!/bin/sh\nexit 1\n", 0755);
  writeFile(scratch / "programs/pacman", "#!/bin/sh\n[ \"$1 $2\" = \"-Qo " + program + "\" ]\n", 0755);
  EXPECT_EQ(findInstallation(program, {}).command, "pacman -Syu");
  writeFile(scratch / "programs/dpkg", "#!/bin/sh\n[ \"$1 $2\" = \"-S " + program + "\" ]\n", 0755);
  before = tree(scratch.path());
  const UpdateCheck check = checkForUpdate(facts(), {});
  EXPECT_EQ(failureText([&] { return installUpdate(facts(), check, {}); }),
            "This copy came from a package: “apt install --only-upgrade tabwright” updates it.");
  EXPECT_EQ(failureOfUpdate(), "UpdateFault.notOurs");
}

TEST(Signature, HoldsByThePublishedExample) {
  // RFC 8032, 7.1, TEST 2.
  const testsupport::ScratchFolder scratch;
  testsupport::ScratchFolder::write(scratch / "message", "\x72");
  const platform::FileDescriptor file(::open((scratch / "message").c_str(), O_RDONLY | O_CLOEXEC));
  const std::string publicKey = "PUAXw+hDiVqStwqnTRt+vJyYLM8uxJaMwM1V8Sr0Zgw=";
  const std::string signature =
      "kqAJqfDUyrhyDoILX2QlQKKye1QWUD+Ps3YiI+vbadoIWsHkPhWZbkWPNhPQ8R2MOHsurrQwKu6wDSkWErsMAA==";
  EXPECT_TRUE(isPublicKey(publicKey));
  EXPECT_EQ(failureText([&] {
              requireSignature(file, signature, publicKey);
              return 0;
            }),
            "no failure");
}

TEST(Signature, OfTheScriptForDistributorsHolds) {
  const testsupport::ScratchFolder scratch;
  const std::string archive = tarGz(programEntries("0.2.0"));
  testsupport::ScratchFolder::write(scratch / "archive", archive);
  const std::string keyFile = (scratch / "key.pem").string();
  const std::string script = (testsupport::sourceFolder() / "scripts/sign-update.sh").string();
  ASSERT_TRUE(runProgram({"openssl", "genpkey", "-algorithm", "ed25519", "-out", keyFile}, {}));
  const auto publicKey = runProgram({script, "--public", keyFile}, {});
  const auto attributes = runProgram({script, keyFile, (scratch / "archive").string()}, {});
  ASSERT_TRUE(publicKey && attributes);
  const std::string head = fmt::format("length=\"{}\" sparkle:edSignature=\"", archive.size());
  ASSERT_THAT(attributes->output, testing::StartsWith(head));
  const platform::FileDescriptor file(::open((scratch / "archive").c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(failureText([&] {
              requireSignature(file, attributes->output.substr(head.size(), 88), publicKey->output.substr(0, 44));
              return 0;
            }),
            "no failure");
  testsupport::ScratchFolder::write(scratch / "nothing", "");
  EXPECT_EQ(runProgram({script, keyFile, (scratch / "nothing").string()}, {})->exitCode, 1);
  EXPECT_EQ(runProgram({script, (scratch / "archive").string(), (scratch / "archive").string()}, {})->exitCode, 1);
}

} // namespace
} // namespace tabwright::updates
