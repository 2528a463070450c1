// guest_run FILES < SCRIPT: starts the test server from what build-guest made in FILES, runs the script there
// and ends as it did. For trying things out by hand.
#include <iostream>
#include <iterator>

#include "GuestTest.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: guest_run FILES < SCRIPT\n";
    return 2;
  }
  try {
    ZEB::guest::Guest guest(arguments[1], ZEB::guest::testServer());
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
