#include "provider/ProviderRegistry.h"

#include <strings.h>

#include "provider/Factory.h"

namespace ZEB {
namespace {

/// How long the last clean-up waits for calls that are under way.
constexpr std::chrono::seconds kPatience{5};

}  // namespace

ProviderRegistry::ProviderRegistry(Factory factory) : _factory(std::move(factory)) {}

ProviderRegistry::~ProviderRegistry() {
  for (auto& [name, entry] : _entries) {
    // A call that never returns keeps its provider: leaking it is better than pulling it from under the call.
    if (entry.provider && !entry.interfaces->close(kPatience)) {
      static_cast<void>(entry.provider.release());
      static_cast<void>(entry.interfaces.release());
    }
  }
}

ProviderRegistry& ProviderRegistry::instance() {
  static ProviderRegistry registry(makeProvider);
  return registry;
}

bool ProviderRegistry::CaseInsensitive::operator()(const std::string& a, const std::string& b) const {
  return strcasecmp(a.c_str(), b.c_str()) < 0;
}

CmpiCpp::CmpiProvider* ProviderRegistry::getProvider(const CmpiCpp::CmpiBroker& broker,
                                                     const std::string& name) {
  const std::lock_guard lock(_mutex);
  auto found = _entries.find(name);
  if (found == _entries.end() || !found->second.provider) {
    std::unique_ptr<CmpiCpp::CmpiProvider> made = _factory(broker, name);
    if (!made) return nullptr;
    found = _entries.try_emplace(name).first;
    Entry& entry = found->second;
    if (!entry.interfaces) {
      entry.interfaces = std::make_unique<CmpiCpp::ManagementInterfaces>(
          [this, name](const CmpiCpp::CmpiContext& context, bool terminating) {
            return release(name, context, terminating);
          });
    }
    made->setInterfaces(entry.interfaces.get());
    entry.interfaces->open(made.get(), broker);
    entry.provider = std::move(made);
  }
  CmpiCpp::CmpiProvider* provider = found->second.provider.get();
  provider->incRefcount();
  return provider;
}

bool ProviderRegistry::release(const std::string& name, const CmpiCpp::CmpiContext& context,
                               bool terminating) {
  const std::lock_guard lock(_mutex);
  const auto found = _entries.find(name);
  if (found == _entries.end() || !found->second.provider) return true;
  Entry& entry = found->second;
  const bool last = entry.provider->refcount() <= 1;
  if (last && !entry.interfaces->close(kPatience)) return false;
  entry.provider->cleanup(context, terminating);
  if (entry.provider->decRefcount() <= 0) entry.provider.reset();
  return true;
}

}  // namespace ZEB
