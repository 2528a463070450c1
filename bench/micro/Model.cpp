#include "model/Model.h"

#include <benchmark/benchmark.h>

#include "ManyInterfaces.h"

// From a snapshot to a model, for ever more of what hangs together.

namespace {

using namespace ZEB::ethernet;

template <HostSnapshot (*make)(unsigned)>
void buildsAModel(benchmark::State& state) {
  const HostSnapshot host = make(static_cast<unsigned>(state.range(0)));
  for (auto round : state) benchmark::DoNotOptimize(buildModel(host, false));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(buildsAModel<test::manyTeams>)->RangeMultiplier(10)->Range(40, 4000)->Complexity();
BENCHMARK(buildsAModel<test::chainOfVlans>)->RangeMultiplier(10)->Range(80, 8000)->Complexity();

}  // namespace
