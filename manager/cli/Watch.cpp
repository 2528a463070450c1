#include "cli/Watch.h"

#include <algorithm>
#include <ostream>

#include "cli/AlertSource.h"
#include "cli/JsonOutput.h"
#include "cli/StopSignals.h"
#include "cli/WatchLine.h"
#include "cli/WatchNames.h"
#include "tree/PropertyView.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kAlertClass[] = "ZEB_EthernetIndication";

std::string counted(std::size_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string announcement(const Options& options, const Tree& tree) {
  std::size_t ports = 0;
  for (const TreeCard& card : tree.cards) ports += card.ports.size();
  const std::string where = options.source.empty() ? tree.host : "the recording " + options.source;
  return "watching " + counted(ports, "port") + " and " + counted(tree.teams.size(), "team") + " of " + where;
}

std::string queryOf(const Options& options) {
  const std::string query = "SELECT * FROM " + std::string(kAlertClass);
  return options.watchCondition.empty() ? query : query + " WHERE " + options.watchCondition;
}

class Watch {
 public:
  Watch(const Options& options, Session& session, const Output& output)
      : _options(options), _session(session), _output(output), _names(session.model()) {}

  void run(ServiceLink* service, const StopSignals& signals) {
    const auto alerts = openAlerts(_session, service, queryOf(_options));
    _output.err << "zebcim: " << announcement(_options, _names.read()) << std::endl;
    _session.deadline().suspend();
    while (!signals.requested() && !isOver()) {
      if (const auto alert = alerts->next(patience())) print(*alert);
    }
    _session.deadline().resume();
  }

 private:
  bool isOver() const { return _printed == _options.watchCount || Clock::now() >= _end; }

  std::chrono::milliseconds patience() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(_end - Clock::now());
    return std::clamp<std::chrono::milliseconds>(left, std::chrono::milliseconds(0), std::chrono::hours(1));
  }

  static Clock::time_point endAfter(const std::optional<double>& seconds) {
    if (!seconds) return Clock::time_point::max();
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*seconds));
  }

  void print(const DeliveredIndication& alert) {
    const Instance& instance = *alert.instance;
    if (_options.json) {
      _output.out << jsonLineOfInstance(instance, _options.jsonForm()) << std::endl;
    } else {
      const std::string name = _names.nameOf(PropertyView(instance).text("AlertingManagedElement"));
      _output.out << lineOfAlert(instance, alert.arrival, name,
                                 {_output.colour, _output.width, _options.advice})
                  << std::endl;
    }
    if (!_output.out) throw ManagerError("cannot write the output");
    ++_printed;
  }

  const Options& _options;
  Session& _session;
  const Output& _output;
  WatchNames _names;
  const Clock::time_point _end = endAfter(_options.watchSeconds);
  std::uint64_t _printed = 0;
};

}  // namespace

void watchAlerts(const Options& options, Session& session, const Output& output) {
  const auto service = session.service();
  const StopSignals signals(
      [&service, &queue = session.broker().indications()] { service ? service->wake() : queue.wake(); });
  Watch(options, session, output).run(service.get(), signals);
}

}  // namespace ZebManager
