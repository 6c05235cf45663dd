// The text comes first, as it finds out which lists the part before it has to declare. The three parts are of
// `DocumentFrame.cpp` (fonts, colours, styles), `ListTable.cpp` and `PageWalk.cpp`.
#include "browserdata/RichText.h"

#include "browserdata/richtext/DocumentFrame.h"
#include "browserdata/richtext/PageWalk.h"

namespace tabwright::browserdata {

std::string richText(const html::Document& page) {
  PageWalk walk;
  walk.add(page.root());
  const std::string body = walk.body().finish();

  std::string result = documentStart();
  walk.lists().append(result);
  result += body;
  result += "}\n";
  return result;
}

} // namespace tabwright::browserdata
