#include "Subscriber.h"

#include <unistd.h>

#include <stdexcept>

#include "Process.h"
#include "support/Console.h"
#include "support/ReceivedExport.h"

namespace ZebManager {

void subscribe(const Unit& unit, const std::string& url) {
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  const Console console(host, [&](const std::string& operation, const std::string& object,
                                  const std::string& assignments) {
    std::vector<std::string> words = {operation, "-nl", "http://writer:secret@" + unit.http() + "/" + object};
    if (!assignments.empty()) words.push_back(assignments);
    const Outcome outcome = run("/usr/bin/wbemcli", words);
    if (outcome.status != 0) throw std::runtime_error(operation + " " + object + ": " + outcome.err);
  });
  console.makeFilter();
  console.makeListener("attacked", url);
  console.subscribe("attacked");
}

std::vector<std::pair<std::string, std::string>> eventsAt(const TestListener& listener) {
  std::vector<std::pair<std::string, std::string>> events;
  for (const auto& request : listener.requests()) {
    const ReceivedExport alert = readExport(request.body);
    events.emplace_back(alert["AlertingManagedElement"], alert["EventID"]);
  }
  return events;
}

}  // namespace ZebManager
