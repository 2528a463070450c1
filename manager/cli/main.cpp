#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "cli/Commands.h"

namespace {

bool isSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value && *value;
}

/// What a terminal that does not say is taken for.
std::size_t widthOfTerminal() {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

}  // namespace

int main(int argc, char** argv) {
  const bool terminal = isatty(STDOUT_FILENO) == 1;
  const bool dumb = !isSet("TERM") || std::string_view(std::getenv("TERM")) == "dumb";
  return ZebManager::runZebcim(argc, argv,
                               {.out = std::cout,
                                .err = std::cerr,
                                .colour = terminal && !dumb && !isSet("NO_COLOR"),
                                .width = terminal ? widthOfTerminal() : 0});
}
