#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "cmpicpp/ManagementInterfaces.h"

namespace ZEB {

/// The providers of the process, by name: makes each on first use, counts the interfaces handed out, and
/// destroys a provider when the last one was cleaned up. Making and destroying never overlap. Object managers
/// are careless about cleaning up, so what is still alive when the library is unloaded is destroyed then.
class ProviderRegistry {
 public:
  /// Null for a name that is not known.
  using Factory = std::function<std::unique_ptr<CmpiCpp::CmpiProvider>(const CmpiCpp::CmpiBroker& broker,
                                                                       const std::string& name)>;

  explicit ProviderRegistry(Factory factory);
  ~ProviderRegistry();
  ProviderRegistry(const ProviderRegistry&) = delete;
  ProviderRegistry& operator=(const ProviderRegistry&) = delete;

  /// The registry of this library.
  static ProviderRegistry& instance();

  /// The provider of that name, made if need be, with one reference more. Null for an unknown name; throws
  /// what the making throws, and then remembers nothing.
  CmpiCpp::CmpiProvider* getProvider(const CmpiCpp::CmpiBroker& broker, const std::string& name);

 private:
  struct CaseInsensitive {
    bool operator()(const std::string& a, const std::string& b) const;
  };
  struct Entry {
    // Object managers may call interfaces after the last clean-up, so these stay.
    std::unique_ptr<CmpiCpp::ManagementInterfaces> interfaces;
    std::unique_ptr<CmpiCpp::CmpiProvider> provider;
  };

  /// One interface was cleaned up. False when it was the last and calls are still under way.
  bool release(const std::string& name, const CmpiCpp::CmpiContext& context, bool terminating);

  Factory _factory;
  std::mutex _mutex;
  std::map<std::string, Entry, CaseInsensitive> _entries;
};

}  // namespace ZEB
