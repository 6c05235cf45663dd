#include "platform/Whitespace.h"
#include "shell/Varn.h"
#include "targets/SupportedBrowsers.h"
#include "views/Controls.h"
#include "views/Following.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/wizard/Pages.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <array>
#include <map>
#include <string>
#include <string_view>

namespace tabwright::views {
namespace {

using shell::AssistiveAccessStatus;

struct StatusLook {
  std::string_view sign;
  std::string_view colour; ///< empty for that of secondary texts
};

StatusLook lookOf(AssistiveAccessStatus status) {
  switch (status) {
  case AssistiveAccessStatus::unknown:
    return {"?", ""};
  case AssistiveAccessStatus::appNotInstalled:
    return {"−", ""};
  case AssistiveAccessStatus::requesting:
    return {"…", "#1a73e8"};
  case AssistiveAccessStatus::granted:
    return {"✓", "#1f8f36"};
  case AssistiveAccessStatus::denied:
    return {"✕", "#d03030"};
  }
  return {"?", ""};
}

/// A row for each supported browser: its status as a sign, and its name.
class StatusRows final : public QWidget {
public:
  explicit StatusRows(const shell::DefaultsKeys& keys) : keys_(keys) {
    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->setContentsMargins(0, 0, 0, 0);
    int row = 0;
    for (const targets::TargetContext& browser : targets::supportedBrowsers()) {
      Row& labels = rows_[browser.id];
      labels = {.sign = new QLabel, .name = new QLabel};
      labels.sign->setFixedWidth(16);
      QFont bold = labels.sign->font();
      bold.setBold(true);
      labels.sign->setFont(bold);
      grid->addWidget(labels.sign, row, 0);
      grid->addWidget(labels.name, row++, 1);
    }
    show(keys_.browserStates.get());
    follow(this, keys_.browserStates, [this] { show(keys_.browserStates.get()); });
  }

private:
  struct Row {
    QLabel* sign;
    QLabel* name;
  };

  void show(const shell::BrowserStates& states) {
    for (const targets::TargetContext& browser : targets::supportedBrowsers()) {
      const auto state = states.find(browser.id);
      const auto status = state == states.end() ? AssistiveAccessStatus::unknown : state->second.assistiveAccess;
      const StatusLook look = lookOf(status);
      const Row& row = rows_.at(browser.id);
      row.sign->setText(text(look.sign));
      row.sign->setForegroundRole(QPalette::PlaceholderText); // but for those that have a colour of their own
      row.sign->setStyleSheet(look.colour.empty() ? QString() : QStringLiteral("color:") + text(look.colour));
      row.name->setText(status == AssistiveAccessStatus::appNotInstalled
                            ? label("setup.browsers.notInstalled", {browser.name})
                            : text(browser.name));
      row.name->setAccessibleName(text(browser.name) + QStringLiteral(": ") +
                                  label(std::string("setup.status.").append(rawValue(status))));
    }
  }

  const shell::DefaultsKeys& keys_;
  std::map<std::string, Row> rows_;
};

/// The key of the button's text; null for nothing to mend.
const char* labelOf(Mending mending) {
  switch (mending) {
  case Mending::none:
    return nullptr;
  case Mending::start:
    return "linux.browsers.start";
  case Mending::install:
    return "linux.browsers.install";
  case Mending::openSwitches:
    break;
  }
  return "linux.browsers.openSwitches";
}

/// The state of the browsers of this system, with a button for each that can be mended.
class ConditionRows final : public QWidget {
public:
  explicit ConditionRows(const Services& services) : services_(services), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    look();
  }

  void look() {
    services_.look([self = QPointer<ConditionRows>(this)](const SystemCondition& condition) {
      if (self)
        self->show(condition);
    });
  }

private:
  void show(const SystemCondition& condition) {
    while (QLayoutItem* item = layout_->takeAt(0)) {
      item->widget()->deleteLater();
      delete item;
    }
    if (!outcome_.empty())
      layout_->addWidget(new MarkdownView("**" + outcome_ + "**"));
    for (const BrowserCondition& browser : condition.browsers) {
      layout_->addWidget(new MarkdownView(browser.sentence));
      for (const std::string& detail : browser.details)
        layout_->addWidget(new MarkdownView("- " + detail));
      if (const char* key = labelOf(browser.mending))
        addButton(*layout_, label(key, {browser.name}), Prominence::plain,
                  [this, id = browser.id, mending = browser.mending] { mend(id, mending); });
    }
    addButton(*layout_, label("linux.browsers.refresh"), Prominence::plain, [this] { look(); });
  }

  void mend(const std::string& id, Mending mending) {
    setEnabled(false);
    services_.mend(id, mending, [self = QPointer<ConditionRows>(this)](const std::string& outcome) {
      if (!self)
        return;
      self->setEnabled(true);
      self->outcome_ = outcome;
      self->look();
    });
  }

  const Services& services_;
  QVBoxLayout* const layout_;
  std::string outcome_; ///< of the last mending, as a sentence
};

} // namespace

QWidget* makeBrowserPermissionsPage(const Services& services, shell::OnboardingFlow& flow,
                                    const std::function<void()>& changed) {
  const shell::DefaultsKeys& keys = services.main.keys();
  const Column page = makeColumn();
  page.layout->addWidget(new MarkdownView(shell::windowText("setup.browsers")));
  auto* conditions = new ConditionRows(services);
  auto* progress = new QProgressBar;
  progress->setRange(0, 0);
  progress->setVisible(false);
  QPushButton* button =
      addButton(*page.layout, label("setup.browsers.button", {shell::Varn::App::name}), Prominence::plain, [] {});
  const auto request = [&services, button, progress, conditions] {
    button->setEnabled(false);
    progress->setVisible(true);
    services.requestBrowserPermissions([button = QPointer<QPushButton>(button), progress, conditions] {
      if (!button) // and with it the whole page
        return;
      button->setEnabled(true);
      progress->setVisible(false);
      conditions->look();
    });
  };
  QObject::connect(button, &QPushButton::clicked, button, request);
  if (services.isRequestingPermissions()) // the user went back, and has come again
    request();
  progress->setAccessibleName(button->text());
  page.layout->addWidget(progress);
  page.layout->addWidget(new StatusRows(keys));

  const std::string running = services.runningBrowsers();
  auto* restart = new MarkdownView(shell::windowText("setup.browsers.restart", {running}));
  page.layout->addWidget(restart);
  const bool isAnyRunning = !platform::isBlank(running);
  restart->setVisible(isAnyRunning && keys.isAssistiveAccessGranted.get());

  const Column here = addSystemBox(*page.layout);
  here.layout->addWidget(new MarkdownView(shell::windowText("linux.browsers")));
  here.layout->addWidget(conditions);

  flow.browserPermissionsAppear(keys.isAssistiveAccessGranted.get());
  follow(page.widget, keys.isAssistiveAccessGranted, [&keys, &flow, changed, restart, isAnyRunning] {
    const bool isGranted = keys.isAssistiveAccessGranted.get();
    flow.accessIsGranted(isGranted);
    restart->setVisible(isAnyRunning && isGranted);
    changed();
  });
  return page.widget;
}

} // namespace tabwright::views
