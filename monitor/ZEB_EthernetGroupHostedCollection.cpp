#include "monitor/ZEB_EthernetGroupHostedCollection.h"

namespace ZEB {

const AssociationClass ZEB_EthernetGroupHostedCollection::kClass{"ZEB_EthernetGroupHostedCollection",
                                                                 {"Antecedent", "Dependent"}};

ZEB_EthernetGroupHostedCollection::ZEB_EthernetGroupHostedCollection(
    const Logger& theLogger, const std::string& nameSpace, CmpiManagedInstance& collection,
    const CmpiCpp::CmpiObjectPath& computerSystem)
    : AssociationFrame(theLogger, nameSpace, kClass, computerSystem, collection.makeObjectPath()) {}

}  // namespace ZEB
