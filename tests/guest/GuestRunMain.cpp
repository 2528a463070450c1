// guest_run FILES [systemd] < SCRIPT: starts the test server from what build-guest made in FILES, under
// systemd or without, runs the script there and ends as it did. For trying things out by hand.
#include <iostream>
#include <iterator>

#include "GuestFixture.h"

int main(int count, char** arguments) {
  const bool systemd = count == 3 && arguments[2] == std::string("systemd");
  if (count != 2 && !systemd) {
    std::cerr << "usage: guest_run FILES [systemd] < SCRIPT\n";
    return 2;
  }
  try {
    using ZEB::guest::FirstProgram;
    ZEB::guest::Guest guest(arguments[1], ZEB::guest::testServer(),
                            systemd ? FirstProgram::Systemd : FirstProgram::Agent);
    const std::string script{std::istreambuf_iterator<char>(std::cin), {}};
    const ZEB::guest::Result result = guest.run(script, std::chrono::hours(1));
    std::cout << result.output;
    std::cerr << result.errors;
    return result.status;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
