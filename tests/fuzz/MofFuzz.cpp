#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "schema/ClassRepository.h"

/// The bytes as a schema. An error begins with the file's name; what is read knows its own classes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto repository = ZebManager::ClassRepository::fromText({reinterpret_cast<const char*>(data), size},
                                                                  "/nowhere/fuzz.mof");
    for (const auto& def : repository.classes()) {
      if (repository.find(def->name) != def.get() || !def->isA(*def)) std::abort();
      for (const auto& property : def->properties) {
        if (def->property(property.name) != &property) std::abort();
        property.valueText(5);
      }
    }
  } catch (const ZebManager::SchemaError& error) {
    if (!std::string(error.what()).starts_with("/nowhere/fuzz.mof:")) std::abort();
  }
  return 0;
}
