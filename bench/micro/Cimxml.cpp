#include <benchmark/benchmark.h>

#include "broker/Broker.h"
#include "cimxml/Message.h"
#include "cimxml/ValueWriter.h"
#include "values/CallMemory.h"
#include "values/Values.h"

// What a CIM-XML client's request costs beside what the plug-in does: reading it and writing the answer.

namespace {

using namespace ZebManager;

const ClassRepository& schema() {
  static const ClassRepository repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  return repository;
}

/// A value of that type, as long as such values are.
CMPIData valueOf(Arena& arena, CMPIType type) {
  if (isArray(type)) {
    Array* const array = makeArray(arena, 1, elementType(type));
    array->body().elements[0] = valueOf(arena, elementType(type));
    return dataOf(array);
  }
  if (type == CMPI_string) return dataOf(makeString(arena, "Ethernet port 2 on ethernet controller 1"));
  if (type == CMPI_dateTime) return dataOf(makeDateTime(arena, {1'700'000'000'000'000, false}));
  CMPIValue value{};
  if (type == CMPI_uint64) value.uint64 = 10'000'000'000;
  if (type == CMPI_uint16) value.uint16 = 12;
  return dataOf(type, value);
}

/// A port with every property of its class.
const InstanceBody& portIn(Arena& arena) {
  const ClassDef& classDef = *schema().find("ZEB_EthernetPort");
  const ObjectPath* const path = makePath(arena, "root/jxv", classDef.name);
  Instance* const instance = makeInstance(arena, *path, classDef, nullptr);
  for (const PropertyDef& property : classDef.properties) {
    const CMPIData data = valueOf(arena, property.type);
    instance->ft->setProperty(instance, property.name.c_str(), &data.value, data.type);
  }
  return instance->body();
}

void writesAnEnumeration(benchmark::State& state) {
  Arena arena;
  const ArenaScope call(arena);
  const InstanceBody& port = portIn(arena);
  std::size_t bytes = 0;
  for (auto round : state) {
    std::string out;
    for (std::int64_t i = 0; i < state.range(0); ++i) appendInstance(out, port);
    bytes += out.size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(writesAnEnumeration)->Arg(1000)->Unit(benchmark::kMillisecond);

void readsARequest(benchmark::State& state) {
  const std::string body =
      R"(<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1001" )"
      R"(PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateInstances"><LOCALNAMESPACEPATH>)"
      R"(<NAMESPACE NAME="root"/><NAMESPACE NAME="jxv"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName">)"
      R"(<CLASSNAME NAME="ZEB_EthernetPort"/></IPARAMVALUE><IPARAMVALUE NAME="LocalOnly"><VALUE>FALSE</VALUE>)"
      R"(</IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";
  for (auto round : state) benchmark::DoNotOptimize(readMessage(body));
}
BENCHMARK(readsARequest);

void readsTheSchema(benchmark::State& state) {
  for (auto round : state) benchmark::DoNotOptimize(ClassRepository::fromFile(ZEB_SCHEMA_FILE));
}
BENCHMARK(readsTheSchema)->Unit(benchmark::kMillisecond);

}  // namespace
