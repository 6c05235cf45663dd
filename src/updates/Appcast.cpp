// Expat calls back at each tag; where a tag stands is told by its depth (rss 1, channel 2, item 3, what an item says 4)
// and by what it is in. Handlers are called from C, so a failure is kept there, and thrown when the parser has ended.
#include "updates/Appcast.h"

#include "platform/Whitespace.h"
#include "updates/UpdateFault.h"
#include "updates/Version.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <expat.h>
#include <memory>
#include <new>
#include <utility>

namespace tabwright::updates {
namespace {

constexpr int deepest = 32;
constexpr std::size_t mostItems = 1000;
constexpr std::uint64_t longestArchive = std::uint64_t{1} << 30;

// Expat joins a namespace and a name with a character that stands in neither.
#define APPCAST_NAME(name) "http://www.andymatuschak.org/xml-namespaces/sparkle\n" name

struct Field {
  std::string_view element;
  std::string_view name; ///< in messages
  std::string AppcastItem::* member;
  bool isTranslated = false; ///< it may stand there once more in other languages: the first counts
};
constexpr Field fields[]{
    {APPCAST_NAME("version"), "sparkle:version", &AppcastItem::version},
    {APPCAST_NAME("shortVersionString"), "sparkle:shortVersionString", &AppcastItem::shortVersionString},
    {APPCAST_NAME("channel"), "sparkle:channel", &AppcastItem::channel},
    {APPCAST_NAME("minimumSystemVersion"), "sparkle:minimumSystemVersion", &AppcastItem::minimumSystemVersion},
    {APPCAST_NAME("releaseNotesLink"), "sparkle:releaseNotesLink", &AppcastItem::releaseNotesLink, true},
    {"description", "description", &AppcastItem::description, true},
    {"link", "link", &AppcastItem::link},
};

const char* attribute(const char** attributes, std::string_view name) {
  for (; *attributes; attributes += 2) {
    if (*attributes == name)
      return attributes[1];
  }
  return nullptr;
}

class AppcastReader {
public:
  AppcastReader() : parser_(XML_ParserCreateNS(nullptr, '\n'), XML_ParserFree) {
    if (!parser_)
      throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(),
        [](void* self, const char* name, const char** attributes) {
          static_cast<AppcastReader*>(self)->guard([&](AppcastReader& reader) { reader.start(name, attributes); });
        },
        [](void* self, const char*) {
          static_cast<AppcastReader*>(self)->guard([](AppcastReader& reader) { reader.end(); });
        });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int length) {
      static_cast<AppcastReader*>(self)->guard(
          [&](AppcastReader& reader) { reader.add({text, static_cast<std::size_t>(length)}); });
    });
    // Without declarations there are no entities but XML's own, neither of the document nor from elsewhere.
    XML_SetStartDoctypeDeclHandler(parser_.get(), [](void* self, const char*, const char*, const char*, int) {
      static_cast<AppcastReader*>(self)->guard(
          [](AppcastReader& reader) { reader.fail("a document type declaration is not taken"); });
    });
  }

  Appcast read(std::string_view document) {
    if (document.size() > longestAppcast)
      throw platform::failure(UpdateFault::malformedFeed, fmt::format("it is longer than {} bytes", longestAppcast));
    const XML_Status status =
        XML_Parse(parser_.get(), document.data(), static_cast<int>(document.size()), /*isFinal=*/1);
    if (failure_)
      std::rethrow_exception(failure_);
    if (status != XML_STATUS_OK)
      fail(XML_ErrorString(XML_GetErrorCode(parser_.get())));
    if (!hasChannel_)
      fail("it has no channel");
    return std::move(items_);
  }

private:
  template <class Work>
  void guard(Work work) {
    if (failure_)
      return;
    try {
      work(*this);
    } catch (...) {
      failure_ = std::current_exception();
      XML_StopParser(parser_.get(), XML_FALSE);
    }
  }

  [[noreturn]] void fail(std::string_view what) const {
    throw platform::failure(UpdateFault::malformedFeed,
                            fmt::format("line {}, column {}: {}", XML_GetCurrentLineNumber(parser_.get()),
                                        XML_GetCurrentColumnNumber(parser_.get()) + 1, what));
  }

  void start(std::string_view name, const char** attributes) {
    if (++depth_ > deepest)
      fail(fmt::format("its elements are nested deeper than {}", deepest));
    if (depth_ == 1) {
      const char* version = attribute(attributes, "version");
      if (name != "rss" || !version || !std::string_view(version).starts_with("2."))
        fail("it is no RSS 2.0");
    } else if (depth_ == 2) {
      isInChannel_ = name == "channel";
      if (isInChannel_ && std::exchange(hasChannel_, true))
        fail("there is a second channel");
    } else if (depth_ == 3) {
      isInItem_ = isInChannel_ && name == "item";
      if (isInItem_)
        startItem();
    } else if (depth_ == 4 && isInItem_) {
      if (name == "enclosure")
        addEnclosure(attributes);
      else
        startField(name);
    }
  }

  void startItem() {
    if (items_.size() == mostItems)
      fail(fmt::format("there are more than {} items", mostItems));
    items_.emplace_back();
    said_.fill(false);
    enclosureVersion_.clear();
    enclosureShortVersion_.clear();
    hasEnclosures_ = false;
  }

  void startField(std::string_view name) {
    field_ = std::ranges::find(fields, name, &Field::element);
    if (field_ == std::end(fields))
      field_ = nullptr;
    if (!field_)
      return;
    const bool isSaid = std::exchange(said_.at(static_cast<std::size_t>(field_ - fields)), true);
    if (isSaid && !field_->isTranslated)
      fail(fmt::format("{} stands there twice", field_->name));
    if (isSaid)
      field_ = nullptr;
  }

  // The first that this system can use counts.
  void addEnclosure(const char** attributes) {
    AppcastItem& item = items_.back();
    hasEnclosures_ = true;
    const char* system = attribute(attributes, APPCAST_NAME("os"));
    if (item.enclosure || (system && std::string_view(system) != "linux"))
      return;
    const auto text = [&](std::string_view name) {
      const char* value = attribute(attributes, name);
      return std::string(value ? platform::trimmingWhitespaceAndNewlines(value) : std::string_view());
    };
    Enclosure enclosure{
        .url = text("url"), .length = 0, .type = text("type"), .signature = text(APPCAST_NAME("edSignature"))};
    if (enclosure.url.empty())
      fail("the enclosure has no url");
    const std::string length = text("length");
    const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), enclosure.length);
    if (error != std::errc() || end != length.data() + length.size() || enclosure.length == 0)
      fail("the enclosure’s length is no number of bytes");
    if (enclosure.length > longestArchive)
      fail(fmt::format("the enclosure is longer than {} bytes", longestArchive));
    enclosureVersion_ = text(APPCAST_NAME("version"));
    enclosureShortVersion_ = text(APPCAST_NAME("shortVersionString"));
    item.enclosure = std::move(enclosure);
  }

  void add(std::string_view text) {
    if (field_ && depth_ == 4)
      items_.back().*(field_->member) += text;
  }

  void end() {
    if (depth_ == 4 && field_) {
      std::string& text = items_.back().*(field_->member);
      text = std::string(platform::trimmingWhitespaceAndNewlines(text));
      field_ = nullptr;
    } else if (depth_ == 3 && isInItem_) {
      endItem();
      isInItem_ = false;
    }
    --depth_;
  }

  // Feeds of an older form give the versions at the archive.
  void endItem() {
    AppcastItem& item = items_.back();
    if (item.version.empty())
      item.version = enclosureVersion_;
    if (item.shortVersionString.empty())
      item.shortVersionString = enclosureShortVersion_;
    if (item.version.empty())
      fail("the item has no sparkle:version");
    for (const auto& [name, version] : {std::pair("sparkle:version", &item.version),
                                        std::pair("sparkle:shortVersionString", &item.shortVersionString),
                                        std::pair("sparkle:minimumSystemVersion", &item.minimumSystemVersion)}) {
      if (!version->empty() && !isVersion(*version))
        fail(fmt::format("the item’s {} is no version", name));
    }
    item.isForOtherSystems = hasEnclosures_ && !item.enclosure;
  }

  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser_;
  std::exception_ptr failure_;
  Appcast items_;
  int depth_ = 0;
  bool hasChannel_ = false;
  bool isInChannel_ = false;
  bool isInItem_ = false;
  // Of the item that is being read.
  std::array<bool, std::size(fields)> said_{}; ///< by the fields
  const Field* field_ = nullptr;
  std::string enclosureVersion_;
  std::string enclosureShortVersion_;
  bool hasEnclosures_ = false;
};

#undef APPCAST_NAME

} // namespace

Appcast readAppcast(std::string_view document) {
  return AppcastReader().read(document);
}

} // namespace tabwright::updates
