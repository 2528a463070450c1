#include "cimxml/Operations.h"

#include <algorithm>
#include <array>

namespace ZebManager {
namespace {

constexpr std::array kOperations = {
    OperationRow{"GetInstance", "InstanceName LocalOnly IncludeQualifiers IncludeClassOrigin PropertyList",
                 getInstance},
    OperationRow{"EnumerateInstances",
                 "ClassName LocalOnly DeepInheritance IncludeQualifiers IncludeClassOrigin PropertyList",
                 enumerateInstances},
    OperationRow{"EnumerateInstanceNames", "ClassName", enumerateInstanceNames},
    OperationRow{"CreateInstance", "NewInstance", createInstance},
    OperationRow{"ModifyInstance", "ModifiedInstance IncludeQualifiers PropertyList", modifyInstance},
    OperationRow{"DeleteInstance", "InstanceName", deleteInstance},
    OperationRow{"GetProperty", "InstanceName PropertyName", getProperty},
    OperationRow{"SetProperty", "InstanceName PropertyName NewValue", setProperty},
    OperationRow{"ExecQuery", "QueryLanguage Query", execQuery},
    OperationRow{"Associators",
                 "ObjectName AssocClass ResultClass Role ResultRole IncludeQualifiers IncludeClassOrigin "
                 "PropertyList",
                 associators},
    OperationRow{"AssociatorNames", "ObjectName AssocClass ResultClass Role ResultRole", associatorNames},
    OperationRow{"References",
                 "ObjectName ResultClass Role IncludeQualifiers IncludeClassOrigin PropertyList", references},
    OperationRow{"ReferenceNames", "ObjectName ResultClass Role", referenceNames},
    OperationRow{"GetClass", "ClassName LocalOnly IncludeQualifiers IncludeClassOrigin PropertyList",
                 getClass},
    OperationRow{"EnumerateClasses",
                 "ClassName DeepInheritance LocalOnly IncludeQualifiers IncludeClassOrigin",
                 enumerateClasses},
    OperationRow{"EnumerateClassNames", "ClassName DeepInheritance", enumerateClassNames},
    OperationRow{"GetQualifier", "QualifierName", getQualifier},
    OperationRow{"EnumerateQualifiers", "", enumerateQualifiers},
};

}  // namespace

const OperationRow* findOperation(std::string_view name) {
  const auto found = std::find_if(kOperations.begin(), kOperations.end(),
                                  [&](const OperationRow& row) { return sameName(row.name, name); });
  return found == kOperations.end() ? nullptr : &*found;
}

}  // namespace ZebManager
