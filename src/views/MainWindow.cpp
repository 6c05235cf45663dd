#include "views/MainWindow.h"

#include "shell/Varn.h"
#include "views/Controls.h"
#include "views/Following.h"
#include "views/MainMenu.h"
#include "views/Text.h"
#include "views/pages/Pages.h"
#include "views/wizard/OnboardingView.h"

#include <QGuiApplication>
#include <QLabel>
#include <QMainWindow>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace tabwright::views {
namespace {

/// The tabs, which follow the state and are followed by it.
class RootView final : public QWidget {
public:
  explicit RootView(const Services& services) : services_(services), tabs_(new QTabWidget) {
    auto* title = new QLabel(QStringLiteral("<b>%1</b>").arg(text(shell::Varn::App::name)));
    title->setAlignment(Qt::AlignHCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 8);
    layout->addWidget(title);
    layout->addWidget(tabs_);
    tabs_->addTab(makeHomePage(services), QString());
    tabs_->addTab(makeSettingsPage(), label("tab.settings"));
    tabs_->addTab(makeDocsPage(services), label("tab.docs"));
    tabs_->addTab(makeAboutPage(services), label("tab.about"));

    shell::AppState& state = services.main.appState();
    nameHome();
    follow(this, services.main.keys().isAssistiveAccessGranted, [this] { nameHome(); });
    tabs_->setCurrentIndex(static_cast<int>(state.selectedView.value()));
    viewObservation_ =
        state.selectedView.observe([this](shell::RootViewTab next) { tabs_->setCurrentIndex(static_cast<int>(next)); });
    QObject::connect(tabs_, &QTabWidget::currentChanged, this, [&state](int index) {
      if (static_cast<int>(state.selectedView.value()) != index)
        state.selectedView.set(static_cast<shell::RootViewTab>(index));
    });
    sheetObservation_ = state.selectedSheet.observe([this](shell::RootViewSheet next) {
      if (next == shell::RootViewSheet::whatsNew)
        showWhatsNew(*window(), services_);
    });
    if (state.selectedSheet.value() == shell::RootViewSheet::whatsNew)
      QTimer::singleShot(0, this, [this] { showWhatsNew(*window(), services_); });
  }

private:
  void nameHome() {
    tabs_->setTabText(0, label(services_.main.keys().isAssistiveAccessGranted.get() ? "tab.home" : "tab.setup"));
  }

  const Services& services_;
  QTabWidget* const tabs_;
  shell::PublishedObservation viewObservation_;
  shell::PublishedObservation sheetObservation_;
};

} // namespace

std::unique_ptr<QtWindow> makeMainWindow(const Services& services) {
  auto frame = std::make_unique<QMainWindow>();
  addMenus(*frame, services);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  frame->resize(QSize(640, 560).boundedTo(screen.size() - QSize(20, 60)));
  auto window = std::make_unique<QtWindow>(shell::mainWindowIdentifier, std::move(frame), [&services](QWidget& widget) {
    static_cast<QMainWindow&>(widget).setCentralWidget(new RootView(services));
    services.main.mainContentAppeared();
  });
  window->setTitle(std::string(shell::Varn::App::name));
  return window;
}

std::unique_ptr<QtWindow> makeOnboardingWindow(const Services& services) {
  auto frame = std::make_unique<QWidget>();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  frame->resize(QSize(600, 600).boundedTo(screen.size() - QSize(20, 60))); // a title bar has to fit, too
  new QVBoxLayout(frame.get());
  for (const auto& keys : {QKeySequence(QKeySequence::Close), QKeySequence(Qt::Key_Escape)}) {
    auto* close = new QShortcut(keys, frame.get());
    QObject::connect(close, &QShortcut::activated, frame.get(), &QWidget::close);
  }
  return std::make_unique<QtWindow>(shell::onboardingWindowIdentifier, std::move(frame), [&services](QWidget& widget) {
    while (QLayoutItem* item = widget.layout()->takeAt(0)) {
      delete item->widget();
      delete item;
    }
    widget.layout()->addWidget(new OnboardingView(services));
  });
}

} // namespace tabwright::views
