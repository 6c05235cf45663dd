#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageFragment.h"
#include "browserdata/PageText.h"
#include "browserdata/RichText.h"
#include "html/Encoding.h"

#include <iostream>
#include <string>
#include <utility>

namespace tabwright::app {

namespace {

std::string converted(const MarkdownCommand& command, const std::string& page) {
  using browserdata::PageText;
  switch (command.form) {
  case MarkdownCommand::Form::richText:
    return browserdata::richText(browserdata::parseFragment(page));
  case MarkdownCommand::Form::gitHubMarkdown: {
    const PageText::Part part = command.isMainAlone ? PageText::Part::mainContent : PageText::Part::whole;
    PageText::Result result = PageText{.html = page, .base = command.base, .part = part}.convert();
    if (result.part != part)
      std::cerr << "The page’s main content can’t be told from the rest of it: this is the whole page.\n";
    return std::move(result.text);
  }
  case MarkdownCommand::Form::markdown:
    break;
  }
  return browserdata::HTMLToMarkdown{.html = page}.convert();
}

} // namespace

ExitCode markdown(const MarkdownCommand& command) {
  // A file says its encoding by itself, if at all: there are no headers of a server here.
  const std::string page = html::decodedPage(command.file == "-" ? readStandardInput() : readTextFile(command.file));
  const std::string text = converted(command, page);
  std::cout << text << (text.empty() || text.ends_with('\n') ? "" : "\n");
  return ExitCode::done;
}

} // namespace tabwright::app
