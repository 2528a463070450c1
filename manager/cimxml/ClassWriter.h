// Classes as XML.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cimxml/Parameters.h"
#include "schema/ClassRepository.h"

namespace ZebManager {

/// What of a class is written.
struct ClassView {
  bool localOnly = true;
  bool qualifiers = true;
  bool classOrigin = false;
  std::optional<std::vector<std::string>> properties;
};

/// What a request asks for. `localOnly`: without a word of the request.
ClassView classView(const Parameters& parameters, const ClassRepository& repository, bool localOnly);

/// CLASS.
void appendClass(std::string& out, const ClassDef& classDef, const ClassView& view);

}  // namespace ZebManager
