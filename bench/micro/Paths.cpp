#include <benchmark/benchmark.h>

#include <string>

#include "cmpicpp/CmpiData.h"

// Names and object paths: what every look-up does.

namespace {

using namespace CmpiCpp;

CmpiObjectPath portPath(int number) {
  return {"root/jxv",
          "ZEB_EthernetPort",
          "server",
          {{"CreationClassName", "ZEB_EthernetPort"},
           {"SystemCreationClassName", "ZEB_ComputerSystem"},
           {"SystemName", "server"},
           {"DeviceID", "JXV:ZEB_EthernetPort:" + std::to_string(number)}}};
}

void hashesAName(benchmark::State& state) {
  std::string_view name = "ZEB_EthernetPortControllerEthernetPort";
  for (auto round : state) {
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(CmpiName::hash(name));
  }
}
BENCHMARK(hashesAName);

void comparesNamesOfOtherCase(benchmark::State& state) {
  std::string_view a = "ZEB_EthernetPortController", b = "zeb_ethernetportcontroller";
  for (auto round : state) {
    benchmark::DoNotOptimize(a);
    benchmark::DoNotOptimize(CmpiName::equal(a, b));
  }
}
BENCHMARK(comparesNamesOfOtherCase);

void makesAPathAndItsHash(benchmark::State& state) {
  for (auto round : state) benchmark::DoNotOptimize(portPath(17).hash());
}
BENCHMARK(makesAPathAndItsHash);

void comparesEqualPaths(benchmark::State& state) {
  const CmpiObjectPath a = portPath(17), b = portPath(17);
  for (auto round : state) benchmark::DoNotOptimize(a == b);
}
BENCHMARK(comparesEqualPaths);

void writesAPathAsText(benchmark::State& state) {
  const CmpiObjectPath path = portPath(17);
  for (auto round : state) benchmark::DoNotOptimize(path.str());
}
BENCHMARK(writesAPathAsText);

}  // namespace
