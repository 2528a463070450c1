#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <set>
#include <thread>

#include "cmpicpp/CmpiProvider.h"

namespace CmpiCpp {

/// The four management interfaces that lead to one provider. Object managers keep what a factory gave them
/// for as long as they like, so this lives until the library is unloaded, while providers come and go behind
/// it; a call that finds none answers `CMPI_RC_ERR_FAILED`. Safe from several threads.
class ManagementInterfaces {
 public:
  using Clock = std::chrono::steady_clock;

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

  /// From now on calls find no provider; returns when the last call under way has left it, but for those of
  /// this very thread: the process may be ending inside of one. Answers false, and leaves everything as it
  /// was, when one has not left within `patience`.
  bool close(Clock::duration patience);

  /// The library is about to leave the process, or the process to end: like `close` for good, and ends the
  /// calls that stand still. Returns when every thread that was here has left the library's code, too.
  bool closeForGood(Clock::duration patience);

  /// One call into the provider, which stays alive as long as this does.
  class Call {
   public:
    explicit Call(ManagementInterfaces& interfaces);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Null when there is none.
    CmpiProvider* provider() const { return _provider; }
    const CmpiBroker& broker() const { return _broker; }

    /// The call has left the provider and only hands over what it found.
    void leaveProvider() { _inProvider = false; }

    /// The call is over for everybody but its client, to whom it never returns: waits, out of the provider's
    /// way, for a clean-up that is terminating or for the end of the library. So many may wait at a time; one
    /// more returns at once.
    void standStill();

   private:
    friend class ManagementInterfaces;

    ManagementInterfaces& _interfaces;
    CmpiProvider* _provider;
    CmpiBroker _broker;
    const Clock::time_point _begun = Clock::now();
    const std::thread::id _thread = std::this_thread::get_id();
    std::atomic<bool> _inProvider{true};
    std::list<Call*>::iterator _place;
    bool _standing = false;
  };

  /// Whether a call has been under way for as long as that.
  bool hasCallSince(Clock::duration age) const;
  /// Whether this thread is inside the provider, in a call that it came here with.
  bool isInProvider() const;

  /// The clean-up of one interface. While indications are enabled, one that is not terminating is answered
  /// with `CMPI_RC_DO_NOT_UNLOAD`, reaches nobody and drops nothing, because object managers go on using the
  /// interfaces then.
  CMPIrc cleanup(const CmpiContext& context, bool terminating);

  void setIndicationsEnabled(bool enabled);
  CmpiBroker broker() const;

 private:
  static constexpr std::size_t kMostStanding = 16;

  bool onlyOwnCallsLeft() const;
  void endStandstill();

  CMPIInstanceMI _instance;
  CMPIAssociationMI _association;
  CMPIMethodMI _method;
  CMPIIndicationMI _indication;
  Release _release;

  mutable std::mutex _mutex;
  std::condition_variable _left;   ///< a call has left, or stands still
  std::condition_variable _ended;  ///< those that stand still may go
  CmpiProvider* _provider = nullptr;
  CmpiBroker _broker;
  std::list<Call*> _calls;  ///< under way, the oldest first, without those that stand still
  std::size_t _standing = 0;
  unsigned _standstills = 0;  ///< how often they were ended
  bool _over = false;
  std::set<pid_t> _leaving;  ///< threads whose calls ended when all was over
  bool _indicationsEnabled = false;
};

}  // namespace CmpiCpp
