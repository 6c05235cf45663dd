#include "engine/PageLibrary.h"

#include "PageLibraryResources.h"

#include <string>

namespace tabwright::engine {

std::string_view pageLibrary() {
  return resources::pageLibrary_js;
}

std::string_view outlineLibrary() {
  static const std::string text = [] {
    std::string joined;
    for (const std::string_view file :
         {resources::accessibleNames_js, resources::elementReferences_js, resources::outlineWalk_js,
          resources::outlineText_js, resources::elementLookup_js})
      joined += file;
    return joined;
  }();
  return text;
}

} // namespace tabwright::engine
