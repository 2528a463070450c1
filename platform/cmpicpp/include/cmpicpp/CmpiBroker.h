#pragma once

#include "cmpi/cmpi.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiObjectPath.h"

namespace CmpiCpp {

/// The object manager, with the context of the factory call that made the provider. A handle, valid until the
/// library is unloaded; the factory's context only until that call returns.
class CmpiBroker {
 public:
  CmpiBroker() = default;
  explicit CmpiBroker(const CMPIBroker* broker, const CMPIContext* factoryContext = nullptr)
      : _broker(broker), _factoryContext(factoryContext) {}

  const CMPIBroker* get() const { return _broker; }
  explicit operator bool() const { return _broker != nullptr; }

  /// Whether the class of `path` is `className` or descends from it. Re-enters no provider. False where the
  /// object manager does not know the class.
  bool classPathIsA(const CmpiObjectPath& path, const CmpiName& className) const;

  /// Makes a context with which one other thread can attach itself once (`AttachedThread`). Call it inside
  /// the factory call; null where the object manager has no threads.
  CMPIContext* prepareAttachThread() const;

 private:
  const CMPIBroker* _broker = nullptr;
  const CMPIContext* _factoryContext = nullptr;
};

}  // namespace CmpiCpp
