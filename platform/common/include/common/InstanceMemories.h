#pragma once

#include <any>
#include <string>
#include <unordered_map>

namespace ZEB {

class CmpiManagedInstance;
class CmpiManagedInstanceCollection;

/// Carries what instances remember over a rebuild, from the instances that go to those that come for the same
/// subject. Not safe to use from several threads.
class InstanceMemories {
 public:
  /// Adds what the instances of a collection remember, in place of what was known of their subjects.
  void take(CmpiManagedInstanceCollection& instances);
  /// Gives an instance what is known of its subject, if anything is.
  void giveTo(CmpiManagedInstance& instance) const;
  void clear() { _memories.clear(); }

 private:
  std::unordered_map<std::string, std::any> _memories;  ///< by subject
};

}  // namespace ZEB
