// The namespace "root/interop": filters, listener destinations and subscriptions as clients make them, and
// the instances that say which namespaces there are.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "broker/Namespace.h"
#include "indications/Subscription.h"
#include "isolation/IndicationFilter.h"

namespace ZebManager {

inline constexpr char kInteropNameSpace[] = "root/interop";

struct InteropSettings {
  std::string directory;                     ///< of the file that keeps the instances; made when missing
  std::string systemName;                    ///< of this server; empty: its host name
  std::string sourceNameSpace = "root/jxv";  ///< where indications come from
  std::size_t mostInstances = 1000;          ///< that clients may have made
  std::size_t mostBytes = 4U << 20;          ///< of all their texts
  std::vector<std::string> aliases = {};     ///< other names of that namespace
  std::uint64_t retryInterval = 60;  ///< seconds between two deliveries of an indication, at the longest
  std::uint64_t retryTime = 86400;   ///< seconds after which one is given up
};

class InteropTable;

/// What a client creates, modifies or deletes is in the file before the operation returns, and is there again
/// after a restart. A damaged file is put aside, with a line in the log, and a fresh one begun. All members
/// are safe from any thread.
class InteropNamespace : public Namespace {
 public:
  /// `repository` describes the namespace itself, `sources` the classes that filters select from; both have
  /// to outlive this. `changed` is called after every change of what is subscribed to, on the thread of the
  /// operation, one at a time; it may ask for what it needs. Throws ManagerError when the file cannot be
  /// opened.
  InteropNamespace(const ClassRepository& repository, const ClassRepository& sources,
                   const InteropSettings& settings, LogLine log, std::function<void()> changed);
  InteropNamespace(const InteropNamespace&) = delete;
  InteropNamespace& operator=(const InteropNamespace&) = delete;
  ~InteropNamespace() override;

  /// Filters with at least one enabled subscription.
  std::vector<IndicationFilter> wantedFilters() const;
  /// Enabled subscriptions.
  std::vector<Subscription> subscriptions() const;

  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view className, PropertyList properties) override;
  Reply enumerateInstanceNames(std::string_view className) override;
  Reply getInstance(const CMPIObjectPath& path, PropertyList properties) override;
  Reply createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) override;
  Reply modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                       PropertyList properties) override;
  Reply deleteInstance(const CMPIObjectPath& path) override;
  Reply associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                    PropertyList properties) override;
  Reply associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) override;
  Reply references(const CMPIObjectPath& path, const AssociationFilter& filter,
                   PropertyList properties) override;
  Reply referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) override;
  Reply invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                     CMPIArgs& out) override;

 private:
  Reply change(const std::function<void(Reply&)>& work);

  const ClassRepository& _repository;
  std::function<void()> _changed;
  std::mutex _announcing;     // held while `_changed` runs
  mutable std::mutex _mutex;  // guards the table
  std::unique_ptr<InteropTable> _table;
};

}  // namespace ZebManager
