// Three lines: the envelope's header, the item's header with the length of its payload, and the payload, an event as
// JSON.
#include "crashreport/ReportEvent.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <string_view>

namespace tabwright::crashreport {
namespace {

namespace json = boost::json;

std::string_view nameOf(ReportEvent::Level level) {
  switch (level) {
  case ReportEvent::Level::fatal:
    return "fatal";
  case ReportEvent::Level::error:
    return "error";
  case ReportEvent::Level::info:
    return "info";
  }
  return {};
}

std::string_view trustOf(const StackFrame& frame) {
  switch (frame.origin) {
  case 'c':
    return "context";
  case 's':
    return "scan";
  default:
    return "fp";
  }
}

std::string hexadecimal(std::uint64_t number) {
  return fmt::format("{:#x}", number);
}

/// The first 16 bytes of a build id as a UUID, whose first three fields have their bytes the other way round.
std::string debugID(std::string buildID) {
  constexpr int order[]{3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
  buildID.resize(32, '0');
  std::string text;
  for (const int byte : order) {
    if (byte < 0)
      text += '-';
    else
      text.append(buildID, static_cast<std::size_t>(byte) * 2, 2);
  }
  return text;
}

json::object exceptionObject(const ReportEvent::Exception& exception) {
  json::object object{{"type", exception.type}};
  if (!exception.value.empty())
    object["value"] = exception.value;
  if (exception.signal) {
    object["mechanism"] = {
        {"type", "signalhandler"},
        {"synthetic", true},
        {"handled", false},
        {"meta",
         {{"signal",
           {{"number", exception.signal->number}, {"code", exception.signal->code}, {"name", exception.type}}}}}};
  } else {
    object["mechanism"] = {{"type", "generic"}, {"handled", true}};
  }
  if (exception.frames.empty())
    return object;
  json::array frames; // outermost first
  for (auto frame = exception.frames.rbegin(); frame != exception.frames.rend(); ++frame)
    frames.push_back({{"instruction_addr", hexadecimal(frame->address)}, {"trust", trustOf(*frame)}});
  object["stacktrace"] = {{"frames", std::move(frames)}};
  return object;
}

json::array images(const std::vector<Module>& modules) {
  json::array list;
  for (const Module& module : modules) {
    json::object image{{"type", "elf"},
                       {"image_addr", hexadecimal(module.address)},
                       {"image_size", module.size},
                       {"code_file", module.name}};
    if (!module.buildID.empty()) {
      image["code_id"] = module.buildID;
      image["debug_id"] = debugID(module.buildID);
    }
    list.push_back(std::move(image));
  }
  return list;
}

} // namespace

std::string envelopeOf(const ReportEvent& event) {
  json::object payload{{"event_id", event.id},
                       {"timestamp", event.seconds},
                       {"platform", "native"},
                       {"level", nameOf(event.level)},
                       {"release", event.program.releaseName},
                       {"dist", event.program.dist},
                       {"environment", event.program.environment}};
  if (!event.message.empty())
    payload["message"] = {{"formatted", event.message}};
  if (event.exception)
    payload["exception"] = {{"values", json::array{exceptionObject(*event.exception)}}};
  if (!event.modules.empty())
    payload["debug_meta"] = {{"images", images(event.modules)}};
  const std::string body = json::serialize(payload);
  const json::object header{{"event_id", event.id}};
  const json::object itemHeader{{"type", "event"}, {"content_type", "application/json"}, {"length", body.size()}};
  return json::serialize(header) + "\n" + json::serialize(itemHeader) + "\n" + body + "\n";
}

} // namespace tabwright::crashreport
