#pragma once

#include <atomic>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"

namespace CmpiCpp {

class ManagementInterfaces;

/// What every provider is, whichever of the four interfaces it offers: the virtual base of all of them.
class CmpiProvider {
 public:
  CmpiProvider() = default;
  virtual ~CmpiProvider() = default;
  CmpiProvider(const CmpiProvider&) = delete;
  CmpiProvider& operator=(const CmpiProvider&) = delete;

  virtual CmpiBroker getBroker() const = 0;

  /// The object manager is about to let go of one interface.
  virtual void cleanup(const CmpiContext& context, bool terminating);
  /// It stays after all: what the clean-ups so far have stopped goes on.
  virtual void goOn();

  /// The interfaces that lead here; set by whoever hands them out, and outliving the provider.
  virtual void setInterfaces(ManagementInterfaces* interfaces);
  ManagementInterfaces* interfaces() const { return _interfaces; }

  /// Version of the provider base that the provider was written for.
  virtual int baseVersion() const { return 2; }

  /// One reference for every interface handed out. The count is only kept here; who hands out deletes.
  int incRefcount() { return ++_refcount; }
  int decRefcount() { return --_refcount; }
  int refcount() const { return _refcount; }

 private:
  std::atomic<int> _refcount{0};
  std::atomic<ManagementInterfaces*> _interfaces{nullptr};
};

}  // namespace CmpiCpp
