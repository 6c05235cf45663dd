#pragma once

#include "shell/OnboardingFlow.h"
#include "views/Services.h"

#include <QWidget>
#include <functional>

namespace tabwright::views {

// The pages of the setup, one to a step. The flow outlives them; `changed` tells that it has changed.

[[nodiscard]] QWidget* makeIntroPage();
[[nodiscard]] QWidget* makeAssistiveAccessPage(const Services& services);
[[nodiscard]] QWidget* makeBrowserPermissionsPage(const Services& services, shell::OnboardingFlow& flow,
                                                  const std::function<void()>& changed);
[[nodiscard]] QWidget* makeAllowJavaScriptPage(const Services& services);
[[nodiscard]] QWidget* makeFinishedPage();

} // namespace tabwright::views
