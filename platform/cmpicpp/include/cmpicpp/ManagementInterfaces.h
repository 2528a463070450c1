#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

#include "cmpicpp/CmpiProvider.h"

namespace CmpiCpp {

/// The four management interfaces that lead to one provider. Object managers keep what a factory gave them
/// for as long as they like, so this lives until the library is unloaded, while providers come and go behind
/// it; a call that finds none answers `CMPI_RC_ERR_FAILED`.
class ManagementInterfaces {
 public:
  /// Asked to drop one reference when an interface was cleaned up; answers false when the provider is still
  /// busy, and then nothing was dropped.
  using Release = std::function<bool(const CmpiContext& context, bool terminating)>;

  explicit ManagementInterfaces(Release release);
  ManagementInterfaces(const ManagementInterfaces&) = delete;
  ManagementInterfaces& operator=(const ManagementInterfaces&) = delete;
  ~ManagementInterfaces() = default;

  CMPIInstanceMI* instanceMI() { return &_instance; }
  CMPIAssociationMI* associationMI() { return &_association; }
  CMPIMethodMI* methodMI() { return &_method; }
  CMPIIndicationMI* indicationMI() { return &_indication; }

  /// From now on calls reach `provider`, with broker objects made by `broker`.
  void open(CmpiProvider* provider, const CmpiBroker& broker);

  /// From now on calls find no provider; returns when the last call under way has left it. Answers false, and
  /// leaves everything as it was, when one has not left within `patience`.
  bool close(std::chrono::milliseconds patience);

  /// One call into the provider, which stays alive as long as this does.
  class Call {
   public:
    explicit Call(ManagementInterfaces& interfaces);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    CmpiProvider* provider() const { return _provider; }

   private:
    ManagementInterfaces& _interfaces;
    CmpiProvider* _provider;
  };

  /// The clean-up of one interface. While indications are enabled, one that is not terminating is answered
  /// with `CMPI_RC_DO_NOT_UNLOAD`, reaches nobody and drops nothing, because object managers go on using the
  /// interfaces then.
  CMPIrc cleanup(const CmpiContext& context, bool terminating);

  void setIndicationsEnabled(bool enabled);
  const CmpiBroker& broker() const { return _broker; }

 private:
  CMPIInstanceMI _instance;
  CMPIAssociationMI _association;
  CMPIMethodMI _method;
  CMPIIndicationMI _indication;
  Release _release;

  std::mutex _mutex;
  std::condition_variable _left;
  CmpiProvider* _provider = nullptr;
  CmpiBroker _broker;
  int _calls = 0;
  bool _indicationsEnabled = false;
};

}  // namespace CmpiCpp
