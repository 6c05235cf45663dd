#include "views/wizard/OnboardingView.h"

#include "views/Text.h"
#include "views/wizard/Pages.h"

#include <QFrame>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <string>

namespace tabwright::views {

/// A dot for each step, filled up to the current one.
class OnboardingView::Dots final : public QWidget {
public:
  explicit Dots(int count) : count_(count) {
    setFixedSize(count * pitch, size);
    setFocusPolicy(Qt::NoFocus);
  }

  void setCurrent(int current) {
    current_ = current;
    setAccessibleName(label("setup.progress", {std::to_string(current), std::to_string(count_)}));
    update();
  }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::gray);
    for (int dot = 1; dot <= count_; ++dot) {
      painter.setBrush(current_ < dot ? QBrush(Qt::NoBrush) : QBrush(Qt::gray));
      painter.drawEllipse(QRectF((dot - 1) * pitch + 5.5, 0.5, size - 1, size - 1));
    }
  }

private:
  static constexpr int size = 10;
  static constexpr int pitch = 20;
  const int count_;
  int current_ = 0;
};

OnboardingView::OnboardingView(const Services& services)
    : services_(services), pageArea_(new QScrollArea), back_(new QPushButton), next_(new QPushButton),
      dots_(new Dots(flow_.numberOfSteps)) {
  pageArea_->setWidgetResizable(true);
  pageArea_->setFrameShape(QFrame::NoFrame);
  auto* divider = new QFrame;
  divider->setFrameShape(QFrame::HLine);
  auto* row = new QHBoxLayout;
  QSizePolicy policy = back_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  back_->setSizePolicy(policy);
  row->addWidget(back_);
  row->addStretch();
  row->addWidget(dots_);
  row->addStretch();
  row->addWidget(next_);
  next_->setDefault(true);
  next_->setAutoDefault(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pageArea_, 1);
  layout->addWidget(divider);
  layout->addLayout(row);

  QObject::connect(back_, &QPushButton::clicked, this, [this] {
    flow_.previousStep();
    showStep();
  });
  QObject::connect(next_, &QPushButton::clicked, this, [this] {
    if (flow_.currentStepNo.value() == flow_.numberOfSteps) {
      window()->close();
      return;
    }
    flow_.nextStep();
    showStep();
  });
  showStep();
}

void OnboardingView::showStep() {
  pageArea_->setWidget(makePage()); // deletes the one before, and starts at the top
  updateButtons();
  QTimer::singleShot(0, next_, [this] { // once the window is there
    QWidget* first = next_->isEnabled() ? next_ : pageArea_->widget()->nextInFocusChain();
    first->setFocus();
  });
}

void OnboardingView::updateButtons() {
  const int step = flow_.currentStepNo.value();
  const bool isLast = step == flow_.numberOfSteps;
  dots_->setCurrent(step);
  back_->setVisible(step > 1);
  back_->setText(text(flow_.prevButtonTitle()));
  next_->setText(isLast ? label("setup.finish") : text(flow_.nextButtonTitle()));
  next_->setEnabled(isLast || flow_.canGoForward());
}

QWidget* OnboardingView::makePage() {
  switch (flow_.currentStep().view) {
  case shell::OnboardingPage::intro:
    return makeIntroPage();
  case shell::OnboardingPage::assistiveAccess:
    return makeAssistiveAccessPage(services_);
  case shell::OnboardingPage::browserPermissions:
    return makeBrowserPermissionsPage(services_, flow_, [this] { updateButtons(); });
  case shell::OnboardingPage::allowJSfromAE:
    return makeAllowJavaScriptPage(services_);
  case shell::OnboardingPage::finished:
    return makeFinishedPage();
  }
  return makeIntroPage();
}

} // namespace tabwright::views
