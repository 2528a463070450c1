#include <thread>

#include "Commands.h"
#include "Manager.h"
#include "Times.h"

namespace ZebBench {

void measureIdle(Arguments arguments, Figures& figures) {
  const auto window = std::chrono::seconds(std::stoi(arguments[0]));
  Manager manager;
  manager.load();
  // Until the announcements of the interfaces' own making have been worked off.
  std::this_thread::sleep_for(std::chrono::seconds(3));
  std::vector<double> shares;
  for (int i = std::stoi(arguments[1]); i > 0; --i) {
    const double before = processorMilliseconds();
    std::this_thread::sleep_for(window);
    const double milliseconds = std::chrono::duration<double, std::milli>(window).count();
    shares.push_back(100 * (processorMilliseconds() - before) / milliseconds);
  }
  figures.add("idle_percent", shares);
  figures.add("ports", static_cast<double>(manager.names("ZEB_EthernetPort").items().size()));
}

}  // namespace ZebBench
