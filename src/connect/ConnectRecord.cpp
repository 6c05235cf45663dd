#include "connect/ConnectRecord.h"

#include "connect/ConnectFault.h"
#include "connect/OwnFolder.h"
#include "platform/JSONReader.h"
#include "platform/linux/BaseDirectories.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::chrono::seconds lockPatience = 5s;

platform::FileLock lockOf(const fs::path& file) {
  platform::ensurePrivateFolder(file.parent_path());
  return {file.string() + ".lock", lockPatience};
}

ConnectRecord::Entry entryOf(const platform::JSONReader& reader) {
  ConnectRecord::Entry entry{.browser = reader.require<std::string>("browser"),
                             .directory = reader.require<std::string>("directory"),
                             .made = {}};
  for (std::string& folder : reader.require<std::vector<std::string>>("made"))
    entry.made.emplace_back(std::move(folder));
  return entry;
}

std::vector<ConnectRecord::Entry> parseRecord(const fs::path& file, const std::string& text) {
  try {
    // Paths may hold any bytes.
    boost::json::parse_options options;
    options.allow_invalid_utf8 = true;
    const boost::json::value value = boost::json::parse(text, {}, options);
    std::vector<ConnectRecord::Entry> entries;
    for (const platform::JSONReader& reader : platform::JSONReader(value).read<std::vector<platform::JSONReader>>())
      entries.push_back(entryOf(reader));
    return entries;
  } catch (const platform::JSONMismatch& mismatch) {
    throw platform::failure(ConnectFault::damagedRecord, file.string() + ": " + mismatch.clause());
  } catch (const boost::system::system_error& error) {
    throw platform::failure(ConnectFault::damagedRecord, file.string() + ": " + error.code().message());
  }
}

} // namespace

fs::path ConnectRecord::usualFile() {
  return platform::stateHome() / "tabwright" / "connected.json";
}

ConnectRecord::ConnectRecord(fs::path file) : file_(std::move(file)), lock_(lockOf(file_)) {
  if (const auto text = OwnFolder::open(file_.parent_path()).read(file_.filename()))
    entries_ = parseRecord(file_, *text);
}

void ConnectRecord::note(std::string_view browser, const fs::path& directory, const std::vector<fs::path>& made) {
  auto entry = std::ranges::find(entries_, directory, &Entry::directory);
  if (entry == entries_.end())
    entry = entries_.insert(entry, Entry{.browser = std::string(browser), .directory = directory, .made = {}});
  for (const fs::path& folder : made) {
    if (std::ranges::find(entry->made, folder) == entry->made.end())
      entry->made.push_back(folder);
  }
  save();
}

void ConnectRecord::forget(const fs::path& directory) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.directory == directory; });
  save();
}

void ConnectRecord::save() const {
  const OwnFolder folder = OwnFolder::open(file_.parent_path());
  if (entries_.empty()) {
    folder.remove(file_.filename());
    return;
  }
  boost::json::array list;
  for (const Entry& entry : entries_) {
    boost::json::array made;
    for (const fs::path& path : entry.made)
      made.emplace_back(path.string());
    list.push_back(boost::json::object{
        {"browser", entry.browser}, {"directory", entry.directory.string()}, {"made", std::move(made)}});
  }
  folder.write(file_.filename(), boost::json::serialize(list) + "\n");
}

} // namespace tabwright::connect
