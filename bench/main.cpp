// zeb_bench COMMAND [ARGUMENT...]: measures one thing in a process of its own and prints the figures as JSON.

#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "values/KeptMemory.h"

namespace {

using namespace ZebBench;

struct Command {
  std::string_view name;
  std::size_t arguments;
  void (*measure)(Arguments, Figures&);
};

constexpr Command kCommands[] = {
    {"cold", 0, measureCold},       {"requests", 1, measureRequests}, {"passes", 1, measurePasses},
    {"alerts", 2, measureAlerts},   {"storm", 3, measureStorm},       {"idle", 2, measureIdle},
    {"scrapes", 1, measureScrapes},
};

}  // namespace

int main(int argc, char** argv) {
  ZebManager::keepMemory();
  const std::vector<std::string> words(argv + 1, argv + argc);
  for (const Command& command : kCommands) {
    if (words.empty() || words[0] != command.name || words.size() != command.arguments + 1) continue;
    try {
      Figures figures;
      command.measure(Arguments(words).subspan(1), figures);
      figures.print();
      return 0;
    } catch (const std::exception& failure) {
      std::cerr << "zeb_bench " << command.name << ": " << failure.what() << "\n";
      return 1;
    }
  }
  std::cerr << "usage: zeb_bench cold | requests ROUNDS | passes ROUNDS | scrapes ROUNDS | alerts NAMESPACE "
               "ROUNDS |"
               " storm NAMESPACE ROUNDS GROUP | idle SECONDS WINDOWS\n";
  return 2;
}
