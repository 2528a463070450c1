#include "classes/port/AssociationFrame.h"

#include "classes/port/ManagedObject.h"
#include "cmpicpp/CmpiFactories.h"
#include "common/ZEBUtil.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

AssociationFrame::AssociationFrame(const Logger& logger, const std::string& nameSpace,
                                   const AssociationClass& associationClass, const CmpiObjectPath& firstEnd,
                                   const CmpiObjectPath& secondEnd)
    : CmpiManagedInstanceAssociation(firstEnd, secondEnd),
      _class(associationClass),
      _nameSpace(nameSpace),
      _logger(classLogger(logger, associationClass.name.view())) {
  _logger.info("cxtor()");
}

AssociationFrame::~AssociationFrame() {
  _logger.info("dxtor()");
}

CmpiObjectPath AssociationFrame::makeObjectPath() {
  CmpiObjectPath::Key first{_class.roles.first, firstEnd()};
  CmpiObjectPath::Key second{_class.roles.second, secondEnd()};
  if (_class.keyOrder == AssociationClass::KeyOrder::SecondRoleFirst) std::swap(first, second);
  return {_nameSpace, _class.name, ZEBUtil::getHostName(), {std::move(first), std::move(second)}};
}

std::size_t AssociationFrame::pathHash() {
  return CmpiObjectPath::classHash(_nameSpace, _class.name.view()) +
         CmpiObjectPath::keyHash(_class.roles.first.view(), firstEnd().hash()) +
         CmpiObjectPath::keyHash(_class.roles.second.view(), secondEnd().hash());
}

CmpiInstance AssociationFrame::makeInstance() {
  CmpiInstance instance = CmpiCpp::makeCmpiInstance(ZEBUtil::getBroker(), makeObjectPath());
  instance.addProperty(_class.roles.first, firstEnd());
  instance.addProperty(_class.roles.second, secondEnd());
  for (const CmpiInstance::Property& extra : _class.extras) instance.addProperty(extra.name, extra.value);
  return instance;
}

}  // namespace ZEB
