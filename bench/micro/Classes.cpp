#include <benchmark/benchmark.h>

#include "Records.h"
#include "classes/port/Associations.h"
#include "classes/port/ZEB_EthernetPort.h"
#include "classes/port/ZEB_EthernetStatistics.h"
#include "cmpicpp/CmpiData.h"

// One instance from a record that knows everything: what a request costs beside the asking.

namespace {

using namespace ZEB;

const std::string kNameSpace = "root/jxv";

void makesAPortInstance(benchmark::State& state) {
  ZEB_EthernetPort port(Logger("bench"), kNameSpace, 1, 1, BMC_physloc_NULL, "PN-1",
                        test::portOf(test::everyPortFacts()));
  for (auto round : state) benchmark::DoNotOptimize(port.makeInstance());
}
BENCHMARK(makesAPortInstance);

void makesAStatisticsInstance(benchmark::State& state) {
  ZEB_EthernetStatistics statistics(Logger("bench"), kNameSpace, 1, 1, test::portOf(test::everyPortFacts()));
  for (auto round : state) benchmark::DoNotOptimize(statistics.makeInstance());
}
BENCHMARK(makesAStatisticsInstance);

void buildsAPort(benchmark::State& state) {
  const Logger logger("bench");
  const EthernetPort record = test::portOf(test::everyPortFacts());
  for (auto round : state) {
    ZEB_EthernetPort port(logger, kNameSpace, 1, 1, BMC_physloc_NULL, "PN-1", record);
    benchmark::DoNotOptimize(port.pathHash());
  }
}
BENCHMARK(buildsAPort);

void buildsAnAssociation(benchmark::State& state) {
  const Logger logger("bench");
  const CmpiCpp::CmpiObjectPath end("root/jxv", "Thing", "h", {{"Id", "1"}});
  for (auto round : state) {
    ZEB_EthernetPortToLANEndpoint association(logger, kNameSpace, end, end);
    benchmark::DoNotOptimize(association.pathHash());
  }
}
BENCHMARK(buildsAnAssociation);

}  // namespace
