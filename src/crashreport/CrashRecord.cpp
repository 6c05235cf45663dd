#include "crashreport/CrashRecord.h"

#include "platform/Failure.h"
#include "platform/JSONReader.h"
#include "platform/JSONText.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>
#include <utility>

namespace tabwright::crashreport {
namespace {

namespace json = boost::json;
using platform::JSONReader;

/// Takes what stands before the next `end` off the text; all of it where there is none.
std::string_view takeWord(std::string_view& text, char end) {
  const std::string_view word = text.substr(0, text.find(end));
  text.remove_prefix(std::min(word.size() + 1, text.size()));
  return word;
}

template <class Number>
bool readNumber(std::string_view word, Number& number, int base = 10) {
  const auto result = std::from_chars(word.data(), word.data() + word.size(), number, base);
  return !word.empty() && result.ec == std::errc() && result.ptr == word.data() + word.size();
}

bool readHead(std::string_view line, CrashRecord& record) {
  try {
    const json::value value = platform::parseJSON(line);
    const JSONReader reader(value);
    record.program = {.releaseName = reader.require<std::string>("release"),
                      .dist = reader.require<std::string>("dist"),
                      .environment = reader.require<std::string>("environment")};
    const auto modules = reader.require<std::vector<JSONReader>>("modules");
    for (const JSONReader& module : modules) {
      record.modules.push_back({.name = module.require<std::string>("name"),
                                .address = module.require<std::uint64_t>("address"),
                                .size = module.require<std::uint64_t>("size"),
                                .buildID = module.require<std::string>("buildID")});
    }
    return record.modules.size() <= mostModules;
  } catch (const platform::Failure&) {
    return false;
  }
}

bool readCrash(std::string_view line, CrashRecord& record) {
  return takeWord(line, ' ') == "crash" && readNumber(takeWord(line, ' '), record.signal) &&
         readNumber(takeWord(line, ' '), record.code) && readNumber(line, record.seconds);
}

bool readFrame(std::string_view line, StackFrame& frame) {
  if (takeWord(line, ' ') != "frame")
    return false;
  const std::string_view origin = takeWord(line, ' ');
  if (origin != "c" && origin != "f" && origin != "s")
    return false;
  frame.origin = origin.front();
  return readNumber(line, frame.address, 16);
}

} // namespace

std::optional<CrashRecord> CrashRecord::parse(std::string_view text) {
  CrashRecord record;
  if (!readHead(takeWord(text, '\n'), record) || !readCrash(takeWord(text, '\n'), record))
    return std::nullopt;
  for (StackFrame frame; record.frames.size() < mostFrames && readFrame(takeWord(text, '\n'), frame);)
    record.frames.push_back(frame);
  return record;
}

std::string crashRecordHead(const ProgramFacts& program, const std::vector<Module>& modules) {
  json::array list;
  for (const Module& module : modules) {
    list.push_back(
        {{"name", module.name}, {"address", module.address}, {"size", module.size}, {"buildID", module.buildID}});
  }
  return json::serialize(json::object{{"release", program.releaseName},
                                      {"dist", program.dist},
                                      {"environment", program.environment},
                                      {"modules", std::move(list)}}) +
         "\n";
}

} // namespace tabwright::crashreport
