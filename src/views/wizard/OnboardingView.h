#pragma once

#include "shell/OnboardingFlow.h"
#include "views/Services.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QWidget>

namespace tabwright::views {

/// The content of the setup's window: the page of the step, and below it the way back and on. It holds the flow, so a
/// new one starts at step 1.
class OnboardingView final : public QWidget {
public:
  explicit OnboardingView(const Services& services);

private:
  class Dots;
  void showStep();
  void updateButtons();
  [[nodiscard]] QWidget* makePage();

  const Services& services_;
  shell::OnboardingFlow flow_;
  QScrollArea* const pageArea_;
  QPushButton* const back_;
  QPushButton* const next_;
  Dots* const dots_;
};

} // namespace tabwright::views
