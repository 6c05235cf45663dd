#include "shell/Varn.h"
#include "views/Controls.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/wizard/Pages.h"

namespace tabwright::views {
namespace {

constexpr std::string_view article = "/t/how-to-enable-allow-javascript-from-apple-events-in-your-browsers/87";

} // namespace

QWidget* makeAllowJavaScriptPage(const Services& services) {
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.javascript.1", {shell::Varn::App::name})));
  if (!services.endpoints.forum.empty()) {
    addLink(*page.layout, label("setup.javascript.link"), [&services] {
      if (const auto address =
              shell::addressWithRef(std::string(services.endpoints.forum).append(article), "onboarding"))
        services.application.openAddress(*address);
    });
  }
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.javascript.2", {shell::Varn::App::name})));
  const Column here = addSystemBox(*page.layout);
  here.layout->addWidget(new MarkdownView(shell::windowText("linux.javascript")));
  return page.widget;
}

} // namespace tabwright::views
