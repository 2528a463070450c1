// Extrinsic methods.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "broker/Namespace.h"
#include "cimxml/ValueReader.h"

namespace ZebManager {

/// Performs a METHODCALL and appends what stands in its METHODRESPONSE. Throws CimError.
void performMethod(pugi::xml_node call, Namespace& target, const ValueReader& reader,
                   std::string_view nameSpace, std::string& out);

}  // namespace ZebManager
