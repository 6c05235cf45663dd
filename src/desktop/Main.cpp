// `tabwright-desktop`: the windows, which `tabwright open` and the desktop's menu show.
#include "desktop/DesktopProcess.h"

int main(int argumentCount, char** arguments) {
  return tabwright::desktop::runDesktop(argumentCount, arguments);
}
