#include <iostream>

#include "cli/Options.h"
#include "server/Examine.h"
#include "server/Serve.h"
#include "values/ManagerError.h"

/// What `zebcim serve` becomes. It has the same command line.
int main(int argc, char** argv) {
  int exitStatus = 0;
  const auto options = ZebManager::parseOptions(argc, argv, std::cout, std::cerr, exitStatus);
  if (!options) return exitStatus;
  try {
    if (options->command == "examine") {
      ZebManager::examine(*options, std::cout);
      return 0;
    }
    if (options->command != "serve") throw ZebManager::ManagerError("this program can only serve");
    return ZebManager::serve(*options, std::cout, std::cerr);
  } catch (const std::exception& error) {
    std::cerr << "zebcim: " << ZebManager::oneLine(error.what()) << "\n";
    return 1;
  }
}
