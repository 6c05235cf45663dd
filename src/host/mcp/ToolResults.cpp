#include "host/mcp/ToolResults.h"

#include "host/FilesInResult.h"
#include "host/mcp/ToolDescriptions.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <string>
#include <string_view>
#include <utility>

namespace tabwright::host {

namespace json = boost::json;

namespace {

constexpr const char* failureKey = "com.tabwright/failure";

// The protocol wants media types where the catalogue has uniform type identifiers.
std::string_view mediaType(std::string_view type) {
  if (type == "com.apple.rtfd")
    return "application/rtf";
  return type.find('/') == std::string_view::npos ? "application/octet-stream" : type;
}

// Moves the bytes of each file out of the result into a resource of the content.
void embedFiles(ActionResult& result, json::array& content) {
  forEachFile(result.value, result.type, [&](json::value& file) {
    json::object& fields = file.as_object();
    const std::string uri =
        fmt::format("tabwright:/result/{}/{}", content.size() + 1, std::string_view(fields.at("filename").as_string()));
    content.push_back(json::object{{"type", "resource"},
                                   {"resource",
                                    {{"uri", uri},
                                     {"mimeType", mediaType(fields.at("type").as_string())},
                                     {"blob", std::move(fields.at("data"))}}}});
    fields.erase("data");
    fields["resource"] = uri;
  });
}

} // namespace

json::object failedResult(const platform::Failure& failure) {
  const platform::FailureIdentity identity = failure.identity();
  json::object kind{{"type", identity.type}, {"case", identity.caseName}};
  if (identity.number)
    kind["number"] = *identity.number;
  return {{"content", json::array{json::object{{"type", "text"}, {"text", failure.errorDescription()}}}},
          {"isError", true},
          {"_meta", {{failureKey, std::move(kind)}}}};
}

json::object succeededResult(ActionResult result) {
  if (result.type.kind == intents::ValueKind::nothing)
    return {{"content", json::array()}};
  json::object answer;
  answer["structuredContent"] =
      isWrapped(result.type) ? json::object{{"result", result.value}} : result.value.as_object();
  json::array files;
  embedFiles(result, files);
  const json::string* text = result.value.if_string();
  json::array content{
      json::object{{"type", "text"}, {"text", text ? *text : json::string(json::serialize(result.value))}}};
  content.insert(content.end(), files.begin(), files.end());
  answer["content"] = std::move(content);
  return answer;
}

} // namespace tabwright::host
