#include "host/mcp/ToolResults.h"

#include "host/FailureWords.h"
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
constexpr const char* noticesKey = "com.tabwright/notices";

json::object textContent(std::string_view text) {
  return {{"type", "text"}, {"text", text}};
}

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
  std::string text = failure.errorDescription();
  if (const std::string cause = causeLine(failure); !cause.empty())
    text += "\n" + cause;
  return {
      {"content", json::array{textContent(text)}}, {"isError", true}, {"_meta", {{failureKey, failureJson(failure)}}}};
}

json::object withNotices(const std::vector<platform::Notice>& notices, json::object result) {
  if (notices.empty())
    return result;
  json::array data;
  for (const platform::Notice& notice : notices) {
    result["content"].as_array().push_back(textContent(notice.sentence));
    data.push_back(noticeJson(notice));
  }
  result["_meta"] = json::object{{noticesKey, std::move(data)}};
  return result;
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
