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

  /// Makes a context with which one other thread can attach itself once. Call it inside the factory call;
  /// null where the object manager has no threads.
  CMPIContext* prepareAttachThread() const;

 private:
  const CMPIBroker* _broker = nullptr;
  const CMPIContext* _factoryContext = nullptr;
};

/// Attaches the calling thread to the object manager for the lifetime of this object.
class ThreadAttachment {
 public:
  ThreadAttachment(const CmpiBroker& broker, CMPIContext* prepared);
  ~ThreadAttachment();
  ThreadAttachment(const ThreadAttachment&) = delete;
  ThreadAttachment& operator=(const ThreadAttachment&) = delete;

  /// False when the object manager refused.
  bool attached() const { return _attached; }

 private:
  CmpiBroker _broker;
  CMPIContext* _context;
  bool _attached = false;
};

/// Broker objects made on an attached thread while this lives are freed with it, where the object manager has
/// the means.
class BrokerMemoryMark {
 public:
  explicit BrokerMemoryMark(const CmpiBroker& broker);
  ~BrokerMemoryMark();
  BrokerMemoryMark(const BrokerMemoryMark&) = delete;
  BrokerMemoryMark& operator=(const BrokerMemoryMark&) = delete;

 private:
  CmpiBroker _broker;
  CMPIGcStat* _mark = nullptr;
};

}  // namespace CmpiCpp
