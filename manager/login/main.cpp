#include <iostream>

#include "isolation/ProviderProcess.h"
#include "login/LoginProcess.h"
#include "values/ManagerError.h"

/// zebcim-login FILE: judges logins for a server with that configuration, which is at descriptor 3.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "zebcim-login: expected the file of the server's configuration\n";
    return 2;
  }
  try {
    return ZebManager::runLoginProcess(ZebManager::kProviderSocket, ZebManager::readLoginSettings(argv[1]));
  } catch (const ZebManager::ManagerError& error) {
    std::cerr << "zebcim: " << error.what() << "\n";
    return 1;
  }
}
