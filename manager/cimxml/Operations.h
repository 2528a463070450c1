// The intrinsic operations.
#pragma once

#include <string>
#include <string_view>

#include "broker/Namespace.h"
#include "cimxml/Parameters.h"
#include "cimxml/ValueReader.h"

namespace ZebManager {

/// What an operation works with. Operations throw CimError.
struct Request {
  Namespace& target;
  const Parameters& parameters;
  const ValueReader& reader;
  std::string nameSpace;

  const ClassRepository& repository() const { return target.repository(); }
};

struct OperationRow {
  std::string_view name;
  std::string_view parameters;  ///< that it takes, between blanks
  /// Appends what stands in the IRETURNVALUE; false when the operation returns nothing.
  bool (*perform)(const Request& request, std::string& out);
};

/// Null when there is no such operation.
const OperationRow* findOperation(std::string_view name);

bool getInstance(const Request& request, std::string& out);
bool enumerateInstances(const Request& request, std::string& out);
bool enumerateInstanceNames(const Request& request, std::string& out);
bool createInstance(const Request& request, std::string& out);
bool modifyInstance(const Request& request, std::string& out);
bool deleteInstance(const Request& request, std::string& out);
bool getProperty(const Request& request, std::string& out);
bool setProperty(const Request& request, std::string& out);

bool execQuery(const Request& request, std::string& out);

/// The class that ClassName names, the instance that InstanceName names, and what the others narrow to.
const ClassDef& askedClass(const Request& request);
const ObjectPath& askedPath(const Request& request);
AssociationFilter associationFilterOf(const Request& request);

bool associators(const Request& request, std::string& out);
bool associatorNames(const Request& request, std::string& out);
bool references(const Request& request, std::string& out);
bool referenceNames(const Request& request, std::string& out);

bool getClass(const Request& request, std::string& out);
bool enumerateClasses(const Request& request, std::string& out);
bool enumerateClassNames(const Request& request, std::string& out);
bool getQualifier(const Request& request, std::string& out);
bool enumerateQualifiers(const Request& request, std::string& out);

/// Classes that are associated with a class, or associations that refer to it.
enum class ClassEnd { Associators, References };
std::vector<const ClassDef*> classesAt(ClassEnd end, const ClassRepository& repository, const ClassDef& asked,
                                       const AssociationFilter& filter);

}  // namespace ZebManager
