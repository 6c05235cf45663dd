#include "shell/OnboardingFlow.h"

#include "shell/WindowText.h"

#include <cstddef>

namespace tabwright::shell {
namespace {

const std::vector<OnboardingStep>& sharedSteps() {
  static const std::vector<OnboardingStep> steps{
      {OnboardingPage::intro, {}, {}, false},
      {OnboardingPage::assistiveAccess, {}, "setup.done", false},
      {OnboardingPage::browserPermissions, {}, {}, true},
      {OnboardingPage::allowJSfromAE, {}, "setup.done", false},
      {OnboardingPage::finished, {}, {}, false},
  };
  return steps;
}

} // namespace

OnboardingFlow::OnboardingFlow()
    : steps(sharedSteps()), numberOfSteps(static_cast<int>(steps.size())),
      defaultPrevButtonLabel(windowText("setup.back")), defaultNextButtonLabel(windowText("setup.continue")) {
  nextStep();
}

void OnboardingFlow::nextStep() {
  if (currentStepNo.value() >= numberOfSteps)
    return;
  currentStepNo.set(currentStepNo.value() + 1);
  if (currentStep().disableNextButton.value_or(false))
    unresolvedIssueAtStep.set(currentStepNo.value());
}

void OnboardingFlow::previousStep() {
  if (currentStepNo.value() >= 2)
    currentStepNo.set(currentStepNo.value() - 1);
}

bool OnboardingFlow::canGoForward() const {
  return unresolvedIssueAtStep.value() == 0 || currentStepNo.value() < unresolvedIssueAtStep.value();
}

std::string OnboardingFlow::prevButtonTitle() const {
  const std::optional<std::string>& label = currentStep().prevButtonLabel;
  return label ? windowText(*label) : defaultPrevButtonLabel;
}

std::string OnboardingFlow::nextButtonTitle() const {
  const std::optional<std::string>& label = currentStep().nextButtonLabel;
  return label ? windowText(*label) : defaultNextButtonLabel;
}

void OnboardingFlow::browserPermissionsAppear(bool isGranted) {
  if (isGranted)
    unresolvedIssueAtStep.set(0);
}

void OnboardingFlow::accessIsGranted(bool isGranted) {
  unresolvedIssueAtStep.set(isGranted ? 0 : currentStepNo.value());
}

const OnboardingStep& OnboardingFlow::currentStep() const {
  return steps.at(static_cast<std::size_t>(currentStepNo.value() - 1));
}

} // namespace tabwright::shell
