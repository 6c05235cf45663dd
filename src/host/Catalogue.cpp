#include "host/Catalogue.h"

#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"

namespace tabwright::host {

Catalogue::Catalogue(const actions::ActionServices& services) : services_(services) {
  // Declarations are made once and kept: lists, schemas and nearest names look at all of them.
  declarations_.reserve(actions::actionList().size());
  for (const actions::ActionMaker make : actions::actionList())
    declarations_.push_back(make(services));
}

std::vector<std::string> Catalogue::names() const {
  std::vector<std::string> names;
  names.reserve(declarations_.size());
  for (const Declaration& action : declarations_)
    names.push_back(action->name());
  return names;
}

const intents::Intent& Catalogue::declaration(std::string_view name) const {
  return *declarations_[placeOf(name)];
}

std::unique_ptr<actions::ActionFrame> Catalogue::make(std::string_view name) const {
  return actions::actionList()[placeOf(name)](services_);
}

std::size_t Catalogue::placeOf(std::string_view name) const {
  // Without its prefix a full type name is a short one.
  std::string_view shortName = name;
  constexpr std::string_view prefix = actions::ActionFrame::typeNamePrefix;
  if (platform::equalIgnoringCase(shortName.substr(0, prefix.size()), prefix))
    shortName.remove_prefix(prefix.size());
  for (std::size_t place = 0; place < declarations_.size(); ++place) {
    if (platform::equalIgnoringCase(declarations_[place]->name(), shortName))
      return place;
  }
  throw intents::UsageError("There is no action “" + std::string(name) + "”." +
                            didYouMean(shortName, names(), " `tabwright actions` lists them all."));
}

} // namespace tabwright::host
