#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "values/ObjectPathText.h"

namespace {

constexpr char kSchema[] = R"(
  class P_Thing { [Key] string Name; };
  class P_Keyed { [Key] uint64 Number; [Key] boolean Flag; [Key] sint32 Signed; [Key] datetime When; };
  [Association] class P_Link { [Key] P_Thing REF One; [Key] P_Keyed REF Other; };
  [Association] class P_Deep { [Key] P_Link REF Link; [Key] P_Thing REF End; };)";

std::string written(ZebManager::Arena& arena, const ZebManager::ClassRepository& repository,
                    std::string_view text) {
  return ZebManager::formatPath(ZebManager::parsePath(arena, repository, "root/jxv", text)->body());
}

}  // namespace

/// The bytes as an object path. What is read, written and read again stays the same; an error is one line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto repository = ZebManager::ClassRepository::fromText(kSchema, "fuzz.mof");
  ZebManager::Arena arena;
  try {
    const std::string once = written(arena, repository, {reinterpret_cast<const char*>(data), size});
    if (written(arena, repository, once) != once) std::abort();
  } catch (const ZebManager::ManagerError& error) {
    if (std::string(error.what()).find('\n') != std::string::npos) std::abort();
  }
  return 0;
}
