#pragma once

#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"

namespace CmpiCpp {

/// A provider of instances. Operations may be called on several threads at once. What is not overridden
/// answers `CMPI_RC_ERR_NOT_SUPPORTED`; failures are thrown as `CmpiStatus`.
class CmpiInstanceProvider : public virtual CmpiProvider {
 public:
  virtual void enumInstanceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                 const CmpiObjectPath& classPath);
  virtual void enumInstances(CmpiInstanceResult& result, const CmpiContext& context,
                             const CmpiObjectPath& classPath, CmpiPropertyList properties);
  virtual void getInstance(CmpiInstanceResult& result, const CmpiContext& context, const CmpiObjectPath& path,
                           CmpiPropertyList properties);
  virtual void createInstance(CmpiObjectPathResult& result, const CmpiContext& context,
                              const CmpiObjectPath& path, const CmpiInstance& instance);
  virtual void modifyInstance(const CmpiContext& context, const CmpiObjectPath& path,
                              const CmpiInstance& instance, CmpiPropertyList properties);
  virtual void deleteInstance(const CmpiContext& context, const CmpiObjectPath& path);
  virtual void execQuery(CmpiInstanceResult& result, const CmpiContext& context, const CmpiObjectPath& path,
                         const char* query, const char* language);

  /// The interface for the object manager; null before the provider was given interfaces.
  CMPIInstanceMI* getInstanceMI() const;
};

}  // namespace CmpiCpp
