#include "engine/JSONDecoding.h"

#include "engine/errors/StringError.h"
#include "platform/JSONText.h"
#include "platform/Logger.h"

#include <boost/json/serialize.hpp>

namespace tabwright::engine {
namespace {

const platform::Logger decodingLog("Scriptacular");

} // namespace

void detail::decode(std::string_view text, const std::function<void(const platform::JSONReader&)>& read) {
  try {
    const boost::json::value json = platform::parseJSON(text);
    read(platform::JSONReader(json));
    if (decodingLog.isOn(platform::LogLevel::debug))
      decodingLog.debug("{}", boost::json::serialize(json));
  } catch (const platform::Failure& reason) {
    // The catalogue's case has no detail, so the reason stands in the log.
    decodingLog.error("{}", reason.errorDescription());
    throw platform::failure(StringError::unableToDecodeJSON);
  }
}

} // namespace tabwright::engine
