#include "common/InstanceMemories.h"

#include "common/CmpiManagedInstanceCollection.h"

namespace ZEB {

void InstanceMemories::take(CmpiManagedInstanceCollection& instances) {
  for (std::size_t i = 0; i < instances.size(); ++i) {
    CmpiManagedInstance& instance = instances.getManagedInstance(i);
    if (const std::string& subject = instance.subject(); !subject.empty()) {
      _memories.insert_or_assign(subject, instance.memory());
    }
  }
}

void InstanceMemories::giveTo(CmpiManagedInstance& instance) const {
  if (_memories.empty()) return;
  const auto known = _memories.find(instance.subject());
  if (known != _memories.end()) instance.remember(known->second);
}

}  // namespace ZEB
