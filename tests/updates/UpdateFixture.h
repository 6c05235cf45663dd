#pragma once

#include "support/Environment.h"
#include "support/PageServer.h"
#include "support/ScratchFolder.h"
#include "updates/UpdateSteps.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <archive.h>
#include <archive_entry.h>
#include <filesystem>
#include <map>
#include <memory>
#include <openssl/evp.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::updates {

/// An entry of an archive that a test makes up.
struct TestEntry {
  std::string name;
  unsigned type = AE_IFREG;
  std::string content; ///< of a file, or where a link leads
  unsigned permissions = 0644;
  bool isHardLink = false;
};

inline std::string tarGz(const std::vector<TestEntry>& entries) {
  std::vector<char> buffer(1 << 20);
  std::size_t used = 0;
  const std::unique_ptr<archive, int (*)(archive*)> writer(archive_write_new(), archive_write_free);
  archive_write_add_filter_gzip(writer.get());
  archive_write_set_format_pax_restricted(writer.get());
  archive_write_open_memory(writer.get(), buffer.data(), buffer.size(), &used);
  for (const TestEntry& each : entries) {
    const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(archive_entry_new(), archive_entry_free);
    archive_entry_set_pathname(entry.get(), each.name.c_str());
    archive_entry_set_perm(entry.get(), each.permissions);
    archive_entry_set_filetype(entry.get(), each.type);
    if (each.isHardLink)
      archive_entry_set_hardlink(entry.get(), each.content.c_str());
    else if (each.type == AE_IFLNK)
      archive_entry_set_symlink(entry.get(), each.content.c_str());
    else if (each.type == AE_IFREG)
      archive_entry_set_size(entry.get(), static_cast<la_int64_t>(each.content.size()));
    if (archive_write_header(writer.get(), entry.get()) != ARCHIVE_OK)
      throw std::runtime_error(archive_error_string(writer.get()));
    if (each.type == AE_IFREG && !each.isHardLink)
      archive_write_data(writer.get(), each.content.data(), each.content.size());
  }
  archive_write_close(writer.get());
  return {buffer.data(), used};
}

/// A program that says its version, as the real one does.
inline std::vector<TestEntry> programEntries(const std::string& version) {
  const std::string host = "#!/bin/sh\n[ \"$1\" = --version ] && echo tabwright " + version + "\n";
  return {{"tabwright/", AE_IFDIR, "", 0755},
          {"tabwright/bin/tabwright", AE_IFREG, "client " + version, 0755},
          {"tabwright/libexec/tabwright/tabwright-host", AE_IFREG, host, 0755},
          {"tabwright/share/doc/notes", AE_IFREG, "notes " + version, 0644}};
}

inline std::string base64(const std::vector<unsigned char>& bytes) {
  std::string text(4 * ((bytes.size() + 2) / 3) + 1, '\0');
  const int length =
      EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytes.data(), static_cast<int>(bytes.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

/// A pair of keys. Each byte of the private one is `seed`.
class SigningKey {
public:
  explicit SigningKey(unsigned char seed) {
    const std::vector<unsigned char> bytes(32, seed);
    key_.reset(EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, bytes.data(), bytes.size()));
  }
  [[nodiscard]] std::string publicKey() const {
    std::vector<unsigned char> bytes(32);
    std::size_t length = bytes.size();
    EVP_PKEY_get_raw_public_key(key_.get(), bytes.data(), &length);
    return base64(bytes);
  }
  [[nodiscard]] std::string sign(std::string_view message) const {
    const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    std::vector<unsigned char> bytes(64);
    std::size_t length = bytes.size();
    EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key_.get());
    EVP_DigestSign(context.get(), bytes.data(), &length, reinterpret_cast<const unsigned char*>(message.data()),
                   message.size());
    return base64(bytes);
  }

private:
  std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key_{nullptr, EVP_PKEY_free};
};

/// An unpacked copy of version 0.1.0 in a folder of its own, and a server of updates.
class UpdateFixture : public testing::Test {
protected:
  UpdateFixture() {
    for (const TestEntry& entry : programEntries("0.1.0")) {
      if (entry.type != AE_IFREG)
        continue;
      writeFile(scratch / "apps" / entry.name, entry.content, entry.permissions);
    }
    std::filesystem::create_directories(scratch / "tmp");
    std::filesystem::create_directories(scratch / "programs");
  }

  static void writeFile(const std::filesystem::path& file, const std::string& content, unsigned permissions) {
    testsupport::ScratchFolder::write(file, content);
    std::filesystem::permissions(file, static_cast<std::filesystem::perms>(permissions));
  }

  [[nodiscard]] std::filesystem::path copy() const { return scratch / "apps/tabwright"; }

  [[nodiscard]] UpdateFacts facts() const {
    return {.feed = server.url("/appcast.xml"),
            .key = key.publicKey(),
            .build = {.version = "0.1.0.1",
                      .programVersion = "0.1.0",
                      .shownVersion = "0.1.0 (1)",
                      .channels = {},
                      .systemVersion = "2.36"},
            .program = copy() / hostPath};
  }

  void serveFeed(const std::string& items) {
    server.serve("/appcast.xml", "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/"
                                 "sparkle\"><channel>" +
                                     items + "</channel></rss>");
  }

  [[nodiscard]] std::string item(const std::string& version, std::size_t length, const std::string& signature) const {
    return fmt::format("<item><sparkle:version>{}</sparkle:version><enclosure url=\"{}\" length=\"{}\" type=\"x/y\" "
                       "sparkle:edSignature=\"{}\"/></item>",
                       version, server.url("/archive.tar.gz"), length, signature);
  }

  /// A feed with one item, and its archive, signed.
  void serveUpdate(const std::string& version, const std::string& archive) {
    serveFeed(item(version, archive.size(), key.sign(archive)));
    server.serve("/archive.tar.gz", archive, "application/gzip");
  }

  /// Looks and installs what is found.
  void update(const RenamePath& rename = renamePath) const {
    const UpdateCheck check = checkForUpdate(facts(), {});
    if (!check.update)
      throw std::runtime_error("nothing found");
    installUpdate(facts(), check, {}, rename);
  }

  /// Everything below a folder with its content, and what links lead to.
  [[nodiscard]] static std::map<std::string, std::string> tree(const std::filesystem::path& folder) {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::string name = entry.path().lexically_relative(folder).string();
      if (entry.is_symlink())
        all[name] = "-> " + std::filesystem::read_symlink(entry.path()).string();
      else
        all[name] = entry.is_directory() ? "/" : testsupport::ScratchFolder::content(entry.path());
    }
    return all;
  }

  support::PageServer server;
  SigningKey key{7};
  testsupport::ScratchFolder scratch;
  // No package manager of this machine's is asked.
  testsupport::Environment environment{
      {{"PATH", (scratch / "programs").string()}, {"TMPDIR", (scratch / "tmp").string()}}};
};

} // namespace tabwright::updates
