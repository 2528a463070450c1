#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "cli/Commands.h"

int main(int argc, char** argv) {
  const char* const noColour = std::getenv("NO_COLOR");
  const bool colour = isatty(STDOUT_FILENO) == 1 && !(noColour && *noColour);
  return ZebManager::runZebcim(argc, argv, std::cout, std::cerr, colour);
}
