// All of it is the browser's own, in files that it replaces while it runs: what can't be read or has another shape is
// passed over.
#include "connect/BrowserProfiles.h"

#include "platform/linux/FileDescriptor.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSettings = std::size_t{32} << 20; // settings of heavy users have a few MB

std::optional<std::string> contentOf(const fs::path& file) {
  return platform::FileDescriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)).readAll(largestSettings);
}

boost::json::value parsed(const fs::path& file) {
  const std::optional<std::string> text = contentOf(file);
  boost::system::error_code error;
  return text ? boost::json::parse(*text, error) : boost::json::value();
}

/// A part of a value; null where there is none.
const boost::json::value* find(const boost::json::value& value, std::string_view pointer) {
  boost::system::error_code error;
  return value.find_pointer(pointer, error);
}

bool isRemovedIn(const fs::path& profile, const std::string& helper) {
  const boost::json::value preferences = parsed(profile / "Preferences");
  const boost::json::value* removed = find(preferences, "/extensions/external_uninstalls");
  const boost::json::array* list = removed ? removed->if_array() : nullptr;
  return list && std::ranges::find(*list, boost::json::value(helper)) != list->end();
}

} // namespace

std::vector<BrowserProfile> readProfiles(const fs::path& userData, const std::string& helper) {
  std::vector<BrowserProfile> profiles;
  const boost::json::value state = parsed(userData / "Local State");
  const boost::json::value* cache = find(state, "/profile/info_cache");
  const boost::json::object* entries = cache ? cache->if_object() : nullptr;
  if (!entries)
    return profiles;
  for (const auto& [key, entry] : *entries) {
    const std::string directory = key;
    // A name with a way in it would lead out of the directory.
    if (directory.empty() || directory.find('/') != std::string::npos || directory == "." || directory == "..")
      continue;
    const boost::json::value* name = find(entry, "/name");
    profiles.push_back({.directory = directory,
                        .name = name && name->is_string() ? std::string(name->get_string()) : directory,
                        .isHelperRemoved = isRemovedIn(userData / directory, helper)});
  }
  std::ranges::sort(profiles, {}, &BrowserProfile::directory);
  return profiles;
}

std::string findProfileOfHelper(const fs::path& userData, const std::string& helper, const std::string& mark) {
  std::error_code error;
  for (fs::directory_iterator profile(userData, error), last; !error && profile != last; profile.increment(error)) {
    std::error_code none; // in most folders there are no such files
    const fs::path storage = profile->path() / "Local Extension Settings" / helper;
    for (fs::directory_iterator file(storage, none); !none && file != last; file.increment(none)) {
      const std::optional<std::string> content = contentOf(file->path());
      if (content && !mark.empty() && content->find(mark) != std::string::npos)
        return profile->path().filename().string();
    }
  }
  return {};
}

} // namespace tabwright::connect
