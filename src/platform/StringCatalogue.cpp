// Tables are kept in the order of the lookup: language by language, English last. Each is parsed under its own
// once-flag when a lookup first comes to it. Parsing them all when the program starts would cost every run what few of
// them need. A broken catalogue must not keep an action from running, so it is logged and counts as empty.
#include "platform/StringCatalogue.h"

#include "platform/Logger.h"
#include "platform/StringCatalogueSources.h"

#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tabwright::platform {
namespace {

const Logger catalogueLog("StringCatalogue");

constexpr std::string_view fallbackLanguage = "en";

std::unordered_map<std::string, std::string> parseTable(const StringCatalogue::Source& source) {
  std::unordered_map<std::string, std::string> texts;
  boost::system::error_code error;
  const boost::json::value json = boost::json::parse({source.json.data(), source.json.size()}, error);
  if (error || !json.is_object()) {
    catalogueLog.error("The string table {} of {} is no JSON object: {}", source.table, source.language,
                       error.message());
    return texts;
  }
  for (const auto& [key, text] : json.get_object()) {
    if (text.is_string())
      texts.emplace(key, text.get_string());
    else
      catalogueLog.error("The text {} in the string table {} of {} is no text", std::string_view(key), source.table,
                         source.language);
  }
  return texts;
}

const char* firstSetVariable() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const char* value = std::getenv(variable); value && *value)
      return value;
  }
  return "";
}

} // namespace

struct StringCatalogue::Table {
  explicit Table(const Source& from) : source(from) {}

  const std::unordered_map<std::string, std::string>& texts() {
    std::call_once(once, [this] { parsed = parseTable(source); });
    return parsed;
  }

  Source source;
  // It can't be moved, hence the deque.
  std::once_flag once;
  std::unordered_map<std::string, std::string> parsed;
};

StringCatalogue::StringCatalogue(std::span<const Source> sources, std::span<const std::string> languages) {
  // A language that comes twice is looked up twice, which changes nothing.
  std::vector<std::string_view> order(languages.begin(), languages.end());
  order.push_back(fallbackLanguage);
  for (const std::string_view language : order) {
    for (const Source& source : sources) {
      if (source.language == language)
        tables_.emplace_back(source);
    }
  }
}

StringCatalogue::~StringCatalogue() = default;

std::string StringCatalogue::localized(std::string_view key, std::string_view table) const {
  // It serves as the key of the maps, and as the text where no table has it.
  std::string name(key);
  for (Table& candidate : tables_) {
    if (candidate.source.table != table)
      continue;
    const auto& texts = candidate.texts();
    if (const auto found = texts.find(name); found != texts.end())
      return found->second;
  }
  return name;
}

const StringCatalogue& StringCatalogue::shared() {
  // Never destroyed: threads may look up texts while the process ends.
  static const StringCatalogue& catalogue = *new StringCatalogue(embeddedStringCatalogues(), languagesOfEnvironment());
  return catalogue;
}

const StringCatalogue& StringCatalogue::english() {
  static const StringCatalogue& catalogue = *new StringCatalogue(embeddedStringCatalogues(), {});
  return catalogue;
}

std::vector<std::string> languagesOfEnvironment() {
  std::string language = firstSetVariable();
  // Behind a dot stands the encoding, behind an at sign a variant such as “euro”.
  language.resize(std::min(language.find_first_of(".@"), language.size()));
  if (language.empty() || language == "C" || language == "POSIX")
    return {};
  std::vector<std::string> languages{language};
  if (const std::size_t region = language.find('_'); region != std::string::npos)
    languages.push_back(language.substr(0, region));
  return languages;
}

std::string localized(std::string_view key, std::string_view table) {
  return StringCatalogue::shared().localized(key, table);
}

std::string localizedFormat(std::string_view key, std::initializer_list<std::string_view> arguments,
                            std::string_view table) {
  return StringCatalogue::shared().localizedFormat(key, arguments, table);
}

// A pass over the format: what is filled in is never read as a placeholder itself.
std::string StringCatalogue::localizedFormat(std::string_view key, std::initializer_list<std::string_view> arguments,
                                             std::string_view table) const {
  const std::string format = localized(key, table);
  std::string text;
  std::size_t next = 0;
  for (std::size_t at = 0; at < format.size();) {
    const std::string_view rest = std::string_view(format).substr(at);
    std::size_t length = 0;
    std::size_t index = next;
    if (rest.starts_with("%%")) {
      text += '%';
      at += 2;
      continue;
    }
    if (rest.starts_with("%@")) {
      length = 2;
    } else if (rest.size() >= 4 && rest[0] == '%' && rest[1] >= '1' && rest[1] <= '9' && rest.substr(2, 2) == "$@") {
      length = 4;
      index = static_cast<std::size_t>(rest[1] - '1');
    }
    // No placeholder, or one without an argument: it stays, for a translation with a slip still to be read.
    if (length == 0 || index >= arguments.size()) {
      text += format[at++];
      continue;
    }
    text += arguments.begin()[index];
    next += length == 2 ? 1 : 0;
    at += length;
  }
  return text;
}

} // namespace tabwright::platform
