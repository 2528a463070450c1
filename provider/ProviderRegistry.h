#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "cmpicpp/ManagementInterfaces.h"
#include "common/WorkerTimer.h"

namespace ZEB {

/// The providers of the process, by name: makes each on first use, counts the interfaces handed out, and
/// destroys a provider when the last one was cleaned up. Making and destroying never overlap. Object managers
/// are careless about cleaning up, so what is still alive when the library is unloaded is destroyed then.
///
/// There is one name that the factory knows, and so one set of interfaces is enough. A call that does not
/// end, and a thread that cannot be stopped, keep the library in the process; unloading waits for a call that
/// has not been under way for long enough to count as one.
class ProviderRegistry {
 public:
  /// Null for a name that is not known.
  using Factory = std::unique_ptr<CmpiCpp::CmpiProvider> (*)(const CmpiCpp::CmpiBroker& broker,
                                                             const std::string& name);

  explicit ProviderRegistry(Factory factory);
  ProviderRegistry(const ProviderRegistry&) = delete;
  ProviderRegistry& operator=(const ProviderRegistry&) = delete;

  /// The registry of this library. It is there for as long as the library is mapped: clients may call while
  /// the process ends, and get an error then.
  static ProviderRegistry& instance();

  /// The provider of that name, made if need be, with one reference more. Null for an unknown name and at the
  /// end of the library; throws what the making throws, and then remembers nothing.
  CmpiCpp::CmpiProvider* getProvider(const CmpiCpp::CmpiBroker& broker, const std::string& name);

  /// The library is about to leave the process, or the process to end: destroys what is still there.
  void end();

 private:
  struct CaseInsensitive {
    bool operator()(const std::string& a, const std::string& b) const;
  };

  /// One interface was cleaned up. False when it was the last and calls are still under way.
  bool release(const CmpiCpp::CmpiContext& context, bool terminating);
  /// Keeps the library in the process where some thread will not leave it; whether it does.
  bool staysForGood() const;
  void startWatch();
  /// False when calls are still under way, which happens at the end of a process alone.
  bool closeForGood();

  const Factory _factory;
  CmpiCpp::ManagementInterfaces _interfaces;
  std::mutex _mutex;
  std::map<std::string, std::unique_ptr<CmpiCpp::CmpiProvider>, CaseInsensitive> _providers;
  std::optional<WorkerTimer> _watch;  ///< looks for what does not end, while there is a provider
  bool _ended = false;
};

}  // namespace ZEB
