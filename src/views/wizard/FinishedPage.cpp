#include "shell/Varn.h"
#include "shell/WindowText.h"
#include "views/Controls.h"
#include "views/MarkdownView.h"
#include "views/wizard/Pages.h"

namespace tabwright::views {

QWidget* makeFinishedPage() {
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.finished", {shell::Varn::App::name})));
  const Column here = addSystemBox(*page.layout);
  here.layout->addWidget(new MarkdownView(shell::windowText("linux.finished")));
  return page.widget;
}

} // namespace tabwright::views
