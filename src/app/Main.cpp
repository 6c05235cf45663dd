#include "app/CommandLine.h"

#include <malloc.h>

int main(int argumentCount, char** arguments) {
  // What a page's conversion or a long list needed is kept for the next one: to give it back to the system and take it
  // again costs as much as the work itself.
  ::mallopt(M_TRIM_THRESHOLD, 16 << 20);
  ::mallopt(M_MMAP_THRESHOLD, 4 << 20);
  return tabwright::app::runCommandLine(argumentCount, arguments);
}
