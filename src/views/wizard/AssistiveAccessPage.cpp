#include "shell/Varn.h"
#include "tabwright_viewsResources.h"
#include "views/Controls.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/wizard/Pages.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <chrono>

namespace tabwright::views {
namespace {

constexpr const char* accessibilitySettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
constexpr std::chrono::seconds pauseBeforeFile{2}; // so that the file comes up beside the settings

} // namespace

QWidget* makeAssistiveAccessPage(const Services& services) {
  const std::string appName = std::string(shell::Varn::App::name) + ".app";
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.access.1")));
  addButton(*page.layout, label("setup.access.button", {appName}), Prominence::prominent, [&services] {
    services.application.openAddress(accessibilitySettings);
    QTimer::singleShot(pauseBeforeFile, qApp, [&services] {
      services.application.revealFile(QCoreApplication::applicationFilePath().toStdString());
    });
  });
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.access.2", {appName})));
  page.layout->addWidget(
      makePicture(resources::onboarding_assistive_access_png, label("setup.access.image", {appName})));

  const Column here = addSystemBox(*page.layout);
  auto* state = new MarkdownView("…");
  here.layout->addWidget(state);
  services.look([shown = QPointer<MarkdownView>(state)](const SystemCondition& condition) {
    if (shown)
      shown->setMarkdown(condition.canReadControls ? shell::windowText("linux.access.on")
                                                   : shell::windowText("linux.access.off", {condition.whyNot}));
  });
  return page.widget;
}

} // namespace tabwright::views
