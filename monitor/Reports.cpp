#include "monitor/Reports.h"

#include <unordered_set>

#include "classes/port/StatusWatcher.h"
#include "common/Handover.h"

namespace ZEB {
namespace {

template <class Visit>
void forEachWatcher(CmpiManagedInstanceCollection& instances, const Visit& visit) {
  for (const std::uint32_t i : instances.watchers()) {
    CmpiManagedInstance& instance = instances.getManagedInstance(i);
    auto* const watcher = dynamic_cast<StatusWatcher*>(&instance);
    if (watcher && !instance.subject().empty()) visit(instance.subject(), *watcher);
  }
}

}  // namespace

void noteReports(CmpiManagedInstanceCollection& instances) {
  Handover& handover = Handover::current();
  std::unordered_set<std::string> subjects;
  forEachWatcher(instances, [&](const std::string& subject, const StatusWatcher& watcher) {
    subjects.insert(subject);
    handover.note(subject, watcher.report());
  });
  handover.keepOnly([&](const std::string& subject) { return subjects.contains(subject); });
}

void resumeReports(CmpiManagedInstanceCollection& instances) {
  Handover& handover = Handover::current();
  forEachWatcher(instances, [&](const std::string& subject, StatusWatcher& watcher) {
    if (const auto report = handover.of(subject)) watcher.resume(*report);
  });
  handover.taken();
  noteReports(instances);
}

}  // namespace ZEB
