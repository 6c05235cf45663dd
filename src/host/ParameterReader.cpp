#include "host/ParameterReader.h"

#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "intents/ValueError.h"
#include "platform/AsciiCase.h"
#include "platform/Utf8.h"

#include <fmt/core.h>

#include <algorithm>
#include <set>

namespace tabwright::host {

namespace {

intents::ParameterBase& requireParameter(const intents::Intent& action, std::string_view name) {
  std::vector<std::string> names;
  for (intents::ParameterBase* parameter : action.parameters()) {
    if (platform::equalIgnoringCase(parameter->name(), name))
      return *parameter;
    names.push_back(parameter->name());
  }
  std::string all;
  for (const std::string& known : names)
    all += (all.empty() ? " Its parameters are " : ", ") + known;
  throw intents::UsageError(action.name() + " has no parameter \"" + std::string(name) + "\"." +
                            didYouMean(name, names, all + "."));
}

// Bytes that are no text would come to light where nobody knows any more whose they are.
void requireUTF8(const intents::ParameterBase& parameter, std::string_view text) {
  if (const auto place = platform::malformedByte(text))
    throw intents::UsageError(fmt::format(
        "{} takes text in UTF-8, but byte {} of what it was given (hexadecimal {:02X}) belongs to no character.",
        parameter.name(), *place + 1, static_cast<unsigned char>(text[*place])));
}

// Reads named values one by one; `assign` hands a value to its parameter.
template <class Values, class Assign>
void readEach(const intents::Intent& action, const Values& values, Assign assign) {
  std::set<const intents::ParameterBase*> given;
  for (const auto& [name, value] : values) {
    intents::ParameterBase& parameter = requireParameter(action, name);
    if (!given.insert(&parameter).second)
      throw intents::UsageError(parameter.name() + " is given twice.");
    try {
      assign(parameter, value);
    } catch (const intents::ValueError& error) {
      throw intents::UsageError(error.within(parameter.name()).errorDescription());
    }
  }
}

} // namespace

void readParameters(intents::Intent& action, const ParameterValues& values) {
  if (const auto* texts = std::get_if<ParameterTexts>(&values)) {
    readEach(action, *texts, [](intents::ParameterBase& parameter, const std::string& text) {
      requireUTF8(parameter, text);
      parameter.setText(text);
    });
    return;
  }
  readEach(action, std::get<boost::json::object>(values),
           [](intents::ParameterBase& parameter, const boost::json::value& json) {
             if (!json.is_null())
               parameter.setJson(json);
           });
}

} // namespace tabwright::host
