// One pass over the lines up to the second group, which belongs to an action of the application and says nothing about
// whether it is there. Localised keys, such as "Name[de]", are keys of other names.
#include "platform/linux/DesktopEntry.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tabwright::platform {

namespace {

constexpr std::string_view group = "[Desktop Entry]";
constexpr std::string_view blanks = " \t\r";

// A carriage return too: files from elsewhere end their lines with one.
std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(blanks);
  if (start == std::string_view::npos)
    return {};
  return text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::optional<std::string> unescaped(std::string_view value) {
  std::string text;
  for (std::size_t place = 0; place < value.size(); ++place) {
    if (value[place] != '\\') {
      text += value[place];
      continue;
    }
    if (++place == value.size())
      return std::nullopt;
    switch (value[place]) {
    case 's':
      text += ' ';
      break;
    case 'n':
      text += '\n';
      break;
    case 't':
      text += '\t';
      break;
    case 'r':
      text += '\r';
      break;
    case '\\':
      text += '\\';
      break;
    default:
      return std::nullopt;
    }
  }
  return text;
}

/// The numbers are of entries older than version 1.0.
std::optional<bool> readBoolean(std::string_view value) {
  if (value == "true" || value == "1")
    return true;
  if (value == "false" || value == "0")
    return false;
  return std::nullopt;
}

/// Keeps the value of a key that we know. False when it is damaged.
bool readKey(std::string_view key, std::string_view value, DesktopEntry& entry, bool& isStartedOverBus) {
  if (key == "Terminal")
    entry.isInTerminal = readBoolean(value).value_or(false);
  if (key == "Hidden" || key == "DBusActivatable") {
    const std::optional<bool> answer = readBoolean(value);
    (key == "Hidden" ? entry.isHidden : isStartedOverBus) = answer.value_or(false);
    // A damaged boolean of another key, such as Terminal, doesn't decide whether the application is there.
    return answer.has_value();
  }
  std::string* field = key == "Type"             ? &entry.type
                       : key == "Name"           ? &entry.name
                       : key == "Exec"           ? &entry.exec
                       : key == "TryExec"        ? &entry.tryExec
                       : key == "StartupWMClass" ? &entry.windowClass
                       : key == "Path"           ? &entry.workingFolder
                                                 : nullptr;
  // Keys of later versions, and those that only menus need.
  if (!field)
    return true;
  std::optional<std::string> text = unescaped(value);
  if (text)
    *field = std::move(*text);
  return text.has_value();
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::span<const std::string> languages) {
  DesktopEntry entry;
  bool isInGroup = false, isStartedOverBus = false;
  std::size_t bestLanguage = languages.size();
  while (!text.empty()) {
    const std::string_view line = trimmed(text.substr(0, text.find('\n')));
    // The last line may lack its end.
    text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    if (line.empty() || line.starts_with('#'))
      continue;
    // A second group ends the reading; what may be damaged behind it doesn't matter.
    if (line.starts_with('[')) {
      if (isInGroup)
        break;
      if (line != group)
        return std::nullopt;
      isInGroup = true;
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos || equals == 0)
      return std::nullopt;
    const std::string_view key = trimmed(line.substr(0, equals)), value = trimmed(line.substr(equals + 1));
    if (!readKey(key, value, entry, isStartedOverBus))
      return std::nullopt;
    for (std::size_t language = 0; key.starts_with("Name[") && language < bestLanguage; ++language) {
      if (key == "Name[" + languages[language] + "]") {
        entry.localName = unescaped(value).value_or("");
        // Only languages that the user likes better can take it over from here.
        bestLanguage = language;
      }
    }
  }
  if (entry.localName.empty())
    entry.localName = entry.name;
  // An entry that only hides another needs no more.
  const bool isWhole = !entry.type.empty() && !entry.name.empty() &&
                       (entry.type != "Application" || !entry.exec.empty() || isStartedOverBus);
  return isWhole || (isInGroup && entry.isHidden) ? std::optional(std::move(entry)) : std::nullopt;
}

std::optional<std::vector<std::string>> commandLineOf(const DesktopEntry& entry) {
  std::vector<std::string> words;
  std::string word;
  bool isQuoted = false, isWord = false;
  const auto finish = [&] {
    if (isWord)
      words.push_back(std::exchange(word, {}));
    isWord = false;
  };
  for (std::size_t place = 0; place < entry.exec.size(); ++place) {
    const char character = entry.exec[place];
    const char next = place + 1 < entry.exec.size() ? entry.exec[place + 1] : '\0';
    if (character == '"') {
      isQuoted = !isQuoted;
      isWord = true;
    } else if (isQuoted && character == '\\') {
      // A backslash keeps the next character from meaning anything, so a quote can stand in quotes.
      word += next;
      ++place;
    } else if (!isQuoted && character == ' ') {
      finish();
    } else if (!isQuoted && character == '%') {
      // The other codes stand for files, addresses and icons, of which none is given.
      if (next == '%' || next == 'c') {
        word += next == '%' ? "%" : entry.localName;
        isWord = true;
      }
      ++place;
    } else {
      word += character;
      isWord = true;
    }
  }
  finish();
  return isQuoted || words.empty() ? std::nullopt : std::optional(std::move(words));
}

} // namespace tabwright::platform
