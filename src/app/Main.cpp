#include "app/CommandLine.h"

int main(int argumentCount, char** arguments) {
  return tabwright::app::runCommandLine(argumentCount, arguments);
}
