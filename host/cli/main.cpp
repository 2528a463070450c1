#include <unistd.h>

#include <iostream>

#include "cli/Commands.h"

int main(int argc, char** argv) {
  return ZebHost::runZebcim(argc, argv, std::cout, std::cerr, isatty(STDOUT_FILENO) == 1);
}
