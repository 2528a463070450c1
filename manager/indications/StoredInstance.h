// An instance of "root/interop" that stays, and how it is named.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "indications/BootClock.h"
#include "values/Objects.h"

namespace ZebManager {

/// A request that cannot be fulfilled, with the code that the client gets.
class Refusal : public std::runtime_error {
 public:
  Refusal(CMPIrc refusalCode, const std::string& message) : std::runtime_error(message), code(refusalCode) {}
  CMPIrc code;
};

/// An instance in memory of its own. It is not changed once others can see it.
struct StoredInstance {
  StoredInstance(const ClassDef& classDef, std::string_view nameSpace);
  /// A copy to change.
  StoredInstance(const StoredInstance& other);
  StoredInstance& operator=(const StoredInstance&) = delete;
  StoredInstance(StoredInstance&&) = delete;
  StoredInstance& operator=(StoredInstance&&) = delete;
  ~StoredInstance() = default;

  const ClassDef& classDef() const { return *instance->body().classDef; }
  /// Null when the property has no value.
  const CMPIData* value(std::string_view property) const;
  std::string text(std::string_view property) const;  ///< of a string; empty without a value
  std::optional<std::uint64_t> number(std::string_view property) const;

  /// Name of what a property refers to; empty when it refers to nothing.
  std::string endAt(const std::string& property) const;

  /// Throws Refusal when the class has no such property, or one of another type.
  void set(const std::string& property, const CMPIData& data);
  void setText(const std::string& property, std::string_view text);
  /// Makes the path's keys what the key properties are. Throws Refusal when one has no value.
  void completePath();

  Arena arena;
  Instance* instance;
  bool fixed = false;  ///< not for clients to change

  // What its table works out when it takes the instance in.
  std::string name;                            ///< InstanceNames::nameOf
  std::map<std::string, std::string> ends;     ///< names of what it refers to, by property
  bool subscribes = false;                     ///< is a subscription
  std::optional<BootClock::time_point> until;  ///< of a subscription that ends
  std::size_t bytes = 0;                       ///< of all its texts
};

/// Names instances: the same for two paths exactly when they name the same instance.
class InstanceNames {
 public:
  /// The keys that clients may leave out get these values.
  InstanceNames(const ClassRepository& repository, std::string nameSpace, std::string systemName)
      : _repository(repository), _nameSpace(std::move(nameSpace)), _systemName(std::move(systemName)) {}

  /// Class and keys in the spelling and order of the class. Throws Refusal: an unknown class or namespace, a
  /// key that is missing or unknown.
  std::string nameOf(const PathBody& path) const;
  std::string nameOf(const CMPIData& reference) const;
  /// What a key is when nobody says; empty for those that have to be given.
  std::string defaultOf(std::string_view key, const ClassDef& classDef) const;

  const ClassRepository& repository() const { return _repository; }
  const std::string& nameSpace() const { return _nameSpace; }
  const std::string& systemName() const { return _systemName; }

 private:
  bool isOwn(const PathBody& path) const;
  std::string nameOf(const PathBody& path, int depth) const;

  const ClassRepository& _repository;
  std::string _nameSpace;
  std::string _systemName;
};

/// Whether two texts name the same namespace.
bool sameNameSpace(std::string_view a, std::string_view b);

/// Class of the system that the instances belong to.
inline constexpr char kSystemClass[] = "ZEB_ComputerSystem";

}  // namespace ZebManager
