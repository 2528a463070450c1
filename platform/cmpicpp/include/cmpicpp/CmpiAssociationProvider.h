#pragma once

#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"

namespace CmpiCpp {

/// A provider of associations; see `CmpiInstanceProvider` for threads and errors.
class CmpiAssociationProvider : public virtual CmpiProvider {
 public:
  virtual void associators(CmpiInstanceResult& result, const CmpiContext& context, const CmpiObjectPath& path,
                           const CmpiName& associationClass, const CmpiName& resultClass,
                           const CmpiName& role, const CmpiName& resultRole, CmpiPropertyList properties);
  virtual void associatorNames(CmpiObjectPathResult& result, const CmpiContext& context,
                               const CmpiObjectPath& path, const CmpiName& associationClass,
                               const CmpiName& resultClass, const CmpiName& role, const CmpiName& resultRole);
  virtual void references(CmpiInstanceResult& result, const CmpiContext& context, const CmpiObjectPath& path,
                          const CmpiName& resultClass, const CmpiName& role, CmpiPropertyList properties);
  virtual void referenceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                              const CmpiObjectPath& path, const CmpiName& resultClass, const CmpiName& role);

  CMPIAssociationMI* getAssociationMI() const;
};

}  // namespace CmpiCpp
