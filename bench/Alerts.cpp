#include <algorithm>
#include <set>
#include <thread>

#include "Commands.h"
#include "Links.h"
#include "Manager.h"
#include "Times.h"
#include "broker/SelectQuery.h"
#include "values/Values.h"

namespace ZebBench {

using namespace ZebManager;
using std::chrono::milliseconds;

namespace {

constexpr char kAlertClass[] = "ZEB_EthernetIndication";

/// What an alert is about, in full.
std::string elementOf(const DeliveredIndication& alert) {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const CMPIData data = alert.instance->ft->getProperty(alert.instance, "AlertingManagedElement", &status);
  return status.rc == CMPI_RC_OK && !isNull(data) ? std::string(textOf(data.value.string)) : std::string();
}

/// A model with a listener for its alerts, whose worker runs by itself.
class Watched {
 public:
  Watched() {
    _manager.load();
    _ports = _manager.names("ZEB_EthernetPort").items().size();
    _manager.broker().indications().open();
    _manager.provider().startIndications(filter(), kAlertClass).orThrow();
    while (_manager.broker().indications().next(milliseconds(500))) {
    }
  }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;
  ~Watched() {
    _manager.provider().stopIndications(filter(), kAlertClass);
    _manager.broker().indications().close();
  }

  std::size_t ports() const { return _ports; }
  std::unique_ptr<DeliveredIndication> next() {
    return _manager.broker().indications().next(milliseconds(5000));
  }

 private:
  const SelectExp& filter() {
    if (!_selection)
      _selection =
          makeSelectExp(_arena, _manager.broker().repository(), std::string("SELECT * FROM ") + kAlertClass);
    return *_selection;
  }

  Manager _manager;
  Arena _arena;
  const SelectExp* _selection = nullptr;
  std::size_t _ports = 0;
};

double millisecondsBetween(LinkMessages::Time begin, LinkMessages::Time end) {
  return std::chrono::duration<double, std::milli>(end - begin).count();
}

}  // namespace

void measureAlerts(Arguments arguments, Figures& figures) {
  const int rounds = std::stoi(arguments[1]);
  Watched watched;
  Links peers(arguments[0]);
  LinkMessages messages;
  std::vector<double> delays;
  for (int round = 0; round < rounds; ++round) {
    // Each link goes down and comes back before the next one's turn.
    const auto port = static_cast<std::size_t>(round) / 2 % watched.ports();
    const std::uint32_t peer = peers.indexOf("p" + std::to_string(port));
    messages.forget();
    peers.set(peer, round % 2 != 0);
    const auto alert = watched.next();
    if (!alert) throw ManagerError("no alert within five seconds");
    delays.push_back(millisecondsBetween(messages.first(), alert->arrival));
    // Past the kernel's own delays and this pass, so that the next change is a first one again.
    std::this_thread::sleep_for(milliseconds(120));
  }
  figures.add("alert_delays", delays);
  figures.add("ports", static_cast<double>(watched.ports()));
}

void measureStorm(Arguments arguments, Figures& figures) {
  Watched watched;
  Links peers(arguments[0]);
  const int rounds = std::stoi(arguments[1]);
  const auto group = static_cast<std::uint32_t>(std::stoul(arguments[2]));
  LinkMessages messages;
  std::vector<double> delays, reported, kernel;
  for (int round = 0; round < rounds; ++round) {
    messages.forget();
    const auto begin = Clock::now();
    peers.setGroup(group, round % 2 != 0);
    kernel.push_back(millisecondsSince(begin));
    std::set<std::string> elements;
    LinkMessages::Time last{};
    while (elements.size() < watched.ports()) {
      const auto alert = watched.next();
      if (!alert) break;
      elements.insert(elementOf(*alert));
      last = alert->arrival;
    }
    delays.push_back(millisecondsBetween(messages.first(), last));
    reported.push_back(static_cast<double>(elements.size()));
    std::this_thread::sleep_for(milliseconds(1000));
  }
  figures.add("storm_delays", delays);
  figures.add("storm_reported", reported);
  figures.add("storm_kernel", kernel);
  figures.add("ports", static_cast<double>(watched.ports()));
}

}  // namespace ZebBench
