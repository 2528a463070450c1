// The instances of "root/interop", in memory and in their file.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "broker/ProviderCalls.h"
#include "indications/InstanceStore.h"
#include "indications/InteropNamespace.h"
#include "indications/InteropRules.h"

namespace ZebManager {

/// For use by one thread at a time. Every member that takes what a client sent throws Refusal.
class InteropTable {
 public:
  /// Throws ManagerError when the file cannot be opened.
  InteropTable(const ClassRepository& repository, const ClassRepository& sources,
               const InteropSettings& settings, LogLine log);
  InteropTable(const InteropTable&) = delete;
  InteropTable& operator=(const InteropTable&) = delete;
  ~InteropTable() = default;

  const StoredInstance& get(const PathBody& path) const;
  /// Those of a class and of what descends from it, by name.
  std::vector<const StoredInstance*> ofClass(std::string_view className) const;
  const StoredInstance& create(const ObjectPath& path, const Instance& given);
  void modify(const PathBody& path, const Instance& given, PropertyList properties);
  void remove(const PathBody& path);

  /// An association of an instance, and what is at its other end.
  struct Link {
    const StoredInstance* association;
    const StoredInstance* end;
  };
  std::vector<Link> links(const PathBody& path, const AssociationFilter& filter) const;

  /// Another number after each change that may have made these two others.
  std::size_t subscribed() const { return _subscribed; }
  std::vector<IndicationFilter> wantedFilters() const;
  std::vector<Subscription> subscriptions() const;

 private:
  const StoredInstance* find(const std::string& name) const;
  const ClassDef& requireClass(std::string_view className, CMPIrc code) const;
  void complete(StoredInstance& stored) const;
  void take(std::unique_ptr<StoredInstance> stored);
  void checkPlace(const StoredInstance& stored) const;
  void keep(std::unique_ptr<StoredInstance> stored);
  bool isUsed(const std::string& name) const;
  void follow(const std::string& name);
  std::optional<Subscription> subscriptionOf(const StoredInstance& stored) const;
  void change(const std::function<void()>& write);
  void saveAnew(const std::string& why);
  void completeFile();
  void addFixed();
  const StoredInstance& addFixed(const char* className, const std::function<void(StoredInstance&)>& fill);
  /// What an association refers to in a role.
  struct Ended {
    const char* role;
    const StoredInstance& instance;
  };
  void addLink(const char* className, const Ended& one, const Ended& other);
  void linksThrough(const StoredInstance& association, const std::string& from,
                    const AssociationFilter& filter, std::vector<Link>& links) const;

  const ClassRepository& _repository;
  const InteropSettings _settings;
  const InstanceNames _names;
  const InteropRules _rules;
  LogLine _log;
  InstanceStore _store;
  bool _incomplete = false;                                           // the file, which was begun anew
  std::map<std::string, std::unique_ptr<StoredInstance>> _instances;  // by InstanceNames::nameOf
  std::size_t _made = 0;                                              // that are not fixed
  std::size_t _bytes = 0;                                             // of these
  std::map<std::string, Subscription> _subscriptions;                 // enabled and whole, by name
  std::size_t _subscribed = 0;
};

}  // namespace ZebManager
