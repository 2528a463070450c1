#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstance.h"
#include "common/Logger.h"

namespace ZEB {

// The property tables of `PropertyTable.h`, which classes name in their headers and fill in their sources.
template <class Subject>
class PropertyRows;
template <class Subject>
struct Properties;

/// The frame of every class that is no association: its logger, its class, and its path, which is made once.
class ManagedObject : public CmpiManagedInstance {
 public:
  ~ManagedObject() override;
  ManagedObject(const ManagedObject&) = delete;
  ManagedObject& operator=(const ManagedObject&) = delete;

  CmpiCpp::CmpiObjectPath makeObjectPath() override { return _path; }
  std::size_t pathHash() override { return _path.hash(); }
  CmpiCpp::CmpiName className() const override { return _path.className(); }

 protected:
  using Keys = std::vector<CmpiCpp::CmpiObjectPath::Key>;

  ManagedObject(const Logger& logger, const std::string& nameSpace, CmpiCpp::NameLiteral className,
                Keys keys);

  const Logger& logger() const { return _logger; }
  const std::string& nameSpace() const { return _path.nameSpace(); }

 private:
  Logger _logger;
  const CmpiCpp::CmpiObjectPath _path;
};

/// "JXV:" + class name + ":" + number: what an instance is identified by within its class.
std::string instanceName(CmpiCpp::NameLiteral className, std::uint32_t number);

/// The keys of a device or an access point: the class, the system it belongs to, and its own `key` with
/// `name`.
std::vector<CmpiCpp::CmpiObjectPath::Key> systemScopedKeys(CmpiCpp::NameLiteral className,
                                                           CmpiCpp::NameLiteral key, const std::string& name);

}  // namespace ZEB
