#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/RichText.h"
#include "html/Document.h"
#include "html/Encoding.h"

#include <iostream>

namespace tabwright::app {

ExitCode markdown(const MarkdownCommand& command) {
  const std::string page = html::decodedPage(command.file == "-" ? readStandardInput() : readTextFile(command.file));
  std::cout << (command.form == MarkdownCommand::Form::richText ? browserdata::richText(html::Document::parse(page))
                                                                : browserdata::HTMLToMarkdown{.html = page}.convert());
  return ExitCode::done;
}

} // namespace tabwright::app
