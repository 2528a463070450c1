// Qualifiers as XML.
#pragma once

#include <string>

#include "schema/ClassRepository.h"
#include "schema/QualifierTypes.h"

namespace ZebManager {

/// QUALIFIER elements of what they belong to. `local`: it is declared in the class that is written, not
/// inherited.
void appendQualifiers(std::string& out, const ClassDef& classDef);
void appendQualifiers(std::string& out, const PropertyDef& property, bool local);
void appendQualifiers(std::string& out, const MethodDef& method, bool local);
void appendQualifiers(std::string& out, const ParameterDef& parameter, bool local);

/// QUALIFIER.DECLARATION.
void appendDeclaration(std::string& out, const QualifierType& type);

}  // namespace ZebManager
