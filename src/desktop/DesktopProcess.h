#pragma once

namespace tabwright::desktop {

/// Runs the program with windows until its user ends it; yields its exit status. One that runs already is asked to show
/// its windows instead. To be called once, on the main thread, which becomes the main actor.
int runDesktop(int argumentCount, char** arguments);

} // namespace tabwright::desktop
