#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "model/Changes.h"
#include "model/Model.h"
#include "recorded/Anonymizer.h"
#include "recorded/SnapshotReader.h"
#include "recorded/SnapshotWriter.h"

using namespace ZEB::ethernet;

/// The bytes as a snapshot file. What is read must be writable, and must then read and write the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto moments = readSnapshots(std::string(reinterpret_cast<const char*>(data), size));
  if (!moments) {
    if (moments.failure().what.empty()) std::abort();
    return 0;
  }
  for (TimedSnapshot& moment : *moments) {
    const std::string text = writeSnapshot(moment.snapshot);
    const auto again = readSnapshots(text);
    if (!again || writeSnapshot(again->front().snapshot) != text) std::abort();
    const auto model = buildModel(moment.snapshot, true);
    if (adaptersDiffer(model.get(), *model) || portTransition(*model, *model)) std::abort();
    anonymize(moment.snapshot, 1);
  }
  return 0;
}
