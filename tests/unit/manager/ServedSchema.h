// The schema that is served, read once.
#pragma once

#include <string>
#include <vector>

#include "schema/ClassRepository.h"

namespace ZebManager {

inline const ClassRepository& schema() {
  static const ClassRepository repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  return repository;
}

}  // namespace ZebManager
