#include "classes/port/ManagedObject.h"

#include "common/ClassNames.h"
#include "common/ZEBUtil.h"

namespace ZEB {

ManagedObject::ManagedObject(const Logger& logger, const std::string& nameSpace,
                             CmpiCpp::NameLiteral className, Keys keys)
    : _logger(classLogger(logger, className.view())),
      _path(nameSpace, className, ZEBUtil::getHostName(), std::move(keys)) {
  _logger.info("cxtor()");
}

ManagedObject::~ManagedObject() {
  _logger.info("dxtor()");
}

std::string instanceName(CmpiCpp::NameLiteral className, std::uint32_t number) {
  return "JXV:" + std::string(className.view()) + ":" + std::to_string(number);
}

std::vector<CmpiCpp::CmpiObjectPath::Key> systemScopedKeys(CmpiCpp::NameLiteral className,
                                                           CmpiCpp::NameLiteral key,
                                                           const std::string& name) {
  // Not from a list, whose elements could only be copied.
  std::vector<CmpiCpp::CmpiObjectPath::Key> keys;
  keys.reserve(4);
  keys.push_back({"CreationClassName", className.view()});
  keys.push_back({"SystemCreationClassName", kComputerSystemClass.view()});
  keys.push_back({"SystemName", ZEBUtil::getHostName()});
  keys.push_back({key, name});
  return keys;
}

}  // namespace ZEB
