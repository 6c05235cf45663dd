#pragma once

#include "platform/Clock.h"
#include "shell/Application.h"
#include "shell/UpdateController.h"
#include "updates/UpdateSteps.h"

#include <boost/asio/any_io_executor.hpp>

#include <string>

namespace tabwright::app {

/// The facts that this build tells of itself to the search for updates, and this process of the copy that it runs from.
[[nodiscard]] updates::UpdateFacts updateFacts(std::string feed);

/// The controller of updates of a program with windows: looks at the feed while one is open. What is given outlives the
/// controllers.
[[nodiscard]] shell::MakeUpdateController feedUpdates(boost::asio::any_io_executor mainActor, platform::Clock& clock,
                                                      const shell::Application& application);

} // namespace tabwright::app
