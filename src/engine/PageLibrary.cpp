#include "engine/PageLibrary.h"

#include "PageLibraryResources.h"

namespace tabwright::engine {

std::string_view pageLibrary() {
  return resources::pageLibrary_js;
}

} // namespace tabwright::engine
