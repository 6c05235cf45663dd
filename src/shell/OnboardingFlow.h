#pragma once

#include "shell/Published.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::shell {

/// The page of a step of the setup.
enum class OnboardingPage { intro, assistiveAccess, browserPermissions, allowJSfromAE, finished };

/// One step of the setup. Labels are keys of the table "Windows"; without one the default holds.
struct OnboardingStep {
  OnboardingPage view = OnboardingPage::intro;
  std::optional<std::string> prevButtonLabel;
  std::optional<std::string> nextButtonLabel;
  std::optional<bool> disableNextButton; ///< given for every step: true where it has to be earned
};

/// The way through the setup: a position among fixed steps, and the step that holds the user up.
///
///     OnboardingFlow flow;                   // at step 1
///     flow.nextStep();
///     flow.nextStep();                       // at step 3, which blocks
///     flow.canGoForward();                   // false
///     flow.accessIsGranted(true);            // the page of step 3 tells
///
/// A window makes a new one whenever it opens. On the main actor only.
class OnboardingFlow {
public:
  OnboardingFlow();

  Published<int> currentStepNo{0};         ///< from 1
  Published<int> unresolvedIssueAtStep{0}; ///< the step that blocks; 0 for none
  const std::vector<OnboardingStep>& steps;
  const int numberOfSteps;
  const std::string defaultPrevButtonLabel; ///< in the user's language
  const std::string defaultNextButtonLabel; ///< in the user's language

  /// Goes on by one; a step that has to be earned blocks from then on. At the last step nothing happens.
  void nextStep();
  /// Goes back by one; at the first step nothing happens. What blocks goes on blocking.
  void previousStep();
  /// False at the step that blocks and behind it.
  [[nodiscard]] bool canGoForward() const;

  /// The labels of the buttons at this step, in the user's language.
  [[nodiscard]] std::string prevButtonTitle() const;
  [[nodiscard]] std::string nextButtonTitle() const;

  /// The page of the browsers appears: access that was granted earlier frees the way.
  void browserPermissionsAppear(bool isGranted);
  /// The access of all browsers has changed while that page is shown.
  void accessIsGranted(bool isGranted);

  [[nodiscard]] const OnboardingStep& currentStep() const;
};

} // namespace tabwright::shell
