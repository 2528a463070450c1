#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "Guest.h"

namespace ZEB::guest {

/// One instance as `zebcim --json=typed` writes it.
struct ServedInstance {
  std::string className, path;
  nlohmann::json properties;

  /// A property's value; null when the instance has no such property.
  nlohmann::json operator[](const std::string& property) const;
  bool has(const std::string& property) const;
};

/// What the plug-in serves in the guest when it is first asked. A question takes about a second there, so all
/// that is no association is asked for at once. Whatever is not there, or there more often than it should be,
/// throws GuestError.
class ServedModel {
 public:
  explicit ServedModel(Guest& guest) : guest_(guest) {}

  /// The instances of a class that is no association.
  const std::vector<ServedInstance>& all(const std::string& className);
  const std::vector<ServedInstance>& links(const std::string& association);
  /// The one instance whose property has this value.
  const ServedInstance& only(const std::string& className, const std::string& property,
                             const nlohmann::json& value);
  const ServedInstance& at(const std::string& className, const std::string& path);
  /// The instances of `className` that an association leads to from `path`, by its properties.
  std::vector<ServedInstance> across(const std::string& association, const std::string& fromRole,
                                     const std::string& path, const std::string& toRole,
                                     const std::string& className);

  /// The port that is this card.
  const ServedInstance& port(const std::string& card);
  /// The controller that carries a port.
  ServedInstance controller(const ServedInstance& port);
  /// The LAN endpoint of an interface, by its name for VLANs and teams and for ports.
  const ServedInstance& endpoint(const std::string& interface);

 private:
  using Classes = std::map<std::string, std::vector<ServedInstance>>;

  /// Adds the instances of a class and of its subclasses, once for each class that is asked for.
  void load(const std::string& className, Classes& into);

  Guest& guest_;
  std::set<std::string> loaded_;
  Classes elements_, associations_;
};

}  // namespace ZEB::guest
