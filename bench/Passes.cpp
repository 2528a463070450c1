#include <algorithm>

#include "Commands.h"
#include "DumpCounter.h"
#include "Manager.h"
#include "Times.h"

namespace ZebBench {

void measurePasses(Arguments arguments, Figures& figures) {
  const int rounds = std::stoi(arguments[0]);
  Manager manager;
  manager.load();
  manager.pollAlways();
  manager.pass();
  const int before = dumpsAskedFor();
  const double processor = processorMilliseconds();
  const std::vector<double> times = timed(rounds, 1, [&] { manager.pass(); });
  figures.add("pass", median(times));
  figures.add("pass_worst", *std::max_element(times.begin(), times.end()));
  figures.add("pass_processor", (processorMilliseconds() - processor) / rounds);
  figures.add("pass_dumps", static_cast<double>(dumpsAskedFor() - before) / rounds);
  figures.add("ports", static_cast<double>(manager.names("ZEB_EthernetPort").items().size()));
}

}  // namespace ZebBench
