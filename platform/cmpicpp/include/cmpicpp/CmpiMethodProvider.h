#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"

namespace CmpiCpp {

/// A provider of extrinsic methods; see `CmpiInstanceProvider` for threads and errors.
class CmpiMethodProvider : public virtual CmpiProvider {
 public:
  virtual void invokeMethod(CmpiMethodResult& result, const CmpiContext& context, const CmpiObjectPath& path,
                            const CmpiName& method, const CmpiArgs& in, CmpiArgs& out);

  CMPIMethodMI* getMethodMI() const;
};

}  // namespace CmpiCpp
