#include "shell/UsageLine.h"
#include "shell/Varn.h"
#include "views/Controls.h"
#include "views/Following.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/pages/Pages.h"

#include <QLabel>
#include <QStackedLayout>
#include <QTimer>

namespace tabwright::views {
namespace {

void openSetup(const Services& services) {
  shell::Varn::Windows::showOnboardingWindow(services.application,
                                             shell::windowText("setup.title", {shell::Varn::App::name}));
}

QWidget* makeUnprepared(const Services& services) {
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("home.prepare", {shell::Varn::App::name})));
  QPushButton* button = addButton(*page.layout, label("setup.title", {shell::Varn::App::name}), Prominence::prominent,
                                  [&services] { openSetup(services); });
  QTimer::singleShot(0, button, [button] { button->setFocus(); }); // once the window is there
  return page.widget;
}

QLabel* makeUsageLine(const Services& services) {
  QLabel* line = makeSecondaryLine({});
  const shell::DefaultsKeys& keys = services.main.keys();
  const auto show = [line, &keys, &services] {
    const std::int64_t days = shell::wholeDays(keys.firstLaunchTimestamp.get(), services.now());
    line->setText(text(shell::usageLine(days, keys.actionsCallCount.get())));
  };
  show();
  follow(line, keys.actionsCallCount, show);
  return line;
}

QWidget* makePrepared(const Services& services) {
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("home.shortcuts", {shell::Varn::App::name})));
  addButton(*page.layout, label("home.openShortcuts"), Prominence::prominent,
            [&services] { services.application.openAddress("shortcuts://"); });
  page.layout->addWidget(makeUsageLine(services));
  page.layout->addWidget(new MarkdownView(shell::windowText("home.isSetUp", {shell::Varn::App::name})));
  addButton(*page.layout, label("home.again"), Prominence::plain, [&services] { openSetup(services); });
  const Column here = addSystemBox(*page.layout);
  here.layout->addWidget(new MarkdownView(shell::windowText("linux.home")));
  return page.widget;
}

} // namespace

QWidget* makeHomePage(const Services& services) {
  auto* page = new QWidget;
  auto* forms = new QStackedLayout(page);
  forms->addWidget(scrolling(makeUnprepared(services)));
  forms->addWidget(scrolling(makePrepared(services)));
  const shell::DefaultsKeys& keys = services.main.keys();
  const auto show = [forms, &keys] { forms->setCurrentIndex(keys.isAssistiveAccessGranted.get() ? 1 : 0); };
  show();
  follow(page, keys.isAssistiveAccessGranted, show);
  return page;
}

QWidget* makeSettingsPage() {
  auto* line = new QLabel(label("settings.none"));
  line->setAlignment(Qt::AlignCenter);
  return line;
}

} // namespace tabwright::views
