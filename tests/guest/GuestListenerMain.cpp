// PORT FOLDER: an HTTP listener on the loopback interface, until SIGTERM. It acknowledges every export, once
// the export is in a file of the folder: 0, 1, …
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "support/TestListener.h"

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: PORT FOLDER\n";
    return 2;
  }
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  const std::filesystem::path folder = arguments[2];
  try {
    const ZebManager::TestListener listener(
        [&](std::size_t number, const auto& request) {
          const std::filesystem::path whole = folder / std::to_string(number),
                                      part = whole.string() + ".part";
          std::ofstream(part) << request.body;
          std::filesystem::rename(part, whole);
          return ZebManager::TestListener::acknowledgement();
        },
        static_cast<std::uint16_t>(std::stoi(arguments[1])));
    std::ofstream(folder / "listens").put('\n');
    int signal = 0;
    sigwait(&ends, &signal);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
