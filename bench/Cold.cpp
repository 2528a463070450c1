#include "Commands.h"
#include "Manager.h"
#include "Times.h"

namespace ZebBench {

void measureCold(Arguments, Figures& figures) {
  Manager manager;
  const double processor = processorMilliseconds();
  figures.add("cold", manager.load());
  figures.add("cold_processor", processorMilliseconds() - processor);
  figures.add("ports", static_cast<double>(manager.names("ZEB_EthernetPort").items().size()));
}

}  // namespace ZebBench
