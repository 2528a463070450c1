#include <benchmark/benchmark.h>

#include <string>

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiData.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/HashIndex.h"

// Look-ups among many instances.

namespace {

using namespace CmpiCpp;

class Thing : public ZEB::CmpiManagedInstance {
 public:
  explicit Thing(int number) : _path("n", "Thing", "h", {{"Id", std::to_string(number)}}) {}
  CmpiObjectPath makeObjectPath() override { return _path; }
  CmpiInstance makeInstance() override { return CmpiInstance(_path); }
  CmpiName className() const override { return _path.className(); }

 private:
  const CmpiObjectPath _path;
};

class Tie : public ZEB::CmpiManagedInstanceAssociation {
 public:
  using CmpiManagedInstanceAssociation::CmpiManagedInstanceAssociation;
  CmpiObjectPath makeObjectPath() override {
    return {"n", className(), "h", {{"Antecedent", firstEnd()}, {"Dependent", secondEnd()}}};
  }
  CmpiInstance makeInstance() override { return CmpiInstance(makeObjectPath()); }
  CmpiName className() const override { return NameLiteral("Tie"); }
  Roles roles() const override { return {"Antecedent", "Dependent"}; }
};

/// Things in a chain.
void fill(ZEB::CmpiManagedInstanceCollection& collection, int things) {
  CmpiObjectPath before;
  for (int i = 0; i < things; ++i) {
    auto* thing = new Thing(i);
    collection.createInstance(thing);
    if (i > 0) collection.createInstance(new Tie(before, thing->makeObjectPath()));
    before = thing->makeObjectPath();
  }
}

void findsByPath(benchmark::State& state) {
  ZEB::CmpiManagedInstanceCollection collection{ZEB::Logger("bench")};
  fill(collection, static_cast<int>(state.range(0)));
  const CmpiObjectPath wanted = Thing(static_cast<int>(state.range(0)) / 2).makeObjectPath();
  for (auto round : state) benchmark::DoNotOptimize(collection.getManagedInstance(wanted));
}
BENCHMARK(findsByPath)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);

void findsTheNeighbours(benchmark::State& state) {
  ZEB::CmpiManagedInstanceCollection collection{ZEB::Logger("bench")};
  fill(collection, static_cast<int>(state.range(0)));
  const CmpiObjectPath wanted = Thing(static_cast<int>(state.range(0)) / 2).makeObjectPath();
  const CmpiName any;
  for (auto round : state) {
    CmpiObjectPathResult result;
    collection.associatorNames(result, CmpiContext(), wanted, any, any, any, any);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(findsTheNeighbours)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);

void sortsAnIndex(benchmark::State& state) {
  for (auto round : state) {
    ZEB::HashIndex index;
    for (std::uint32_t i = 0; i < state.range(0); ++i) index.add(i * 0x9e3779b97f4a7c15, i);
    benchmark::DoNotOptimize(index.find(0));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(sortsAnIndex)->RangeMultiplier(10)->Range(1000, 100000)->Complexity(benchmark::oNLogN);

}  // namespace
