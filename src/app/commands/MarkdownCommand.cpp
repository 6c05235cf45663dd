#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageFragment.h"
#include "browserdata/RichText.h"
#include "html/Encoding.h"

#include <iostream>

namespace tabwright::app {

ExitCode markdown(const MarkdownCommand& command) {
  // A file says its encoding by itself, if at all: there are no headers of a server here.
  const std::string page = html::decodedPage(command.file == "-" ? readStandardInput() : readTextFile(command.file));
  const std::string text = command.form == MarkdownCommand::Form::richText
                               ? browserdata::richText(browserdata::parseFragment(page))
                               : browserdata::HTMLToMarkdown{.html = page}.convert();
  std::cout << text << (text.empty() || text.ends_with('\n') ? "" : "\n");
  return ExitCode::done;
}

} // namespace tabwright::app
