// Debian's Alertmanager, as a process of the test's own.
#pragma once

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Server.h"
#include "posix/Arguments.h"

namespace ZebManager {

inline constexpr char kAlertmanager[] = "/usr/bin/prometheus-alertmanager";

/// Forgets everything when it ends.
class RealAlertmanager {
 public:
  explicit RealAlertmanager(std::uint16_t port) : _address("127.0.0.1:" + std::to_string(port)) {
    std::ofstream(_folder / "alertmanager.yml") << "route: {receiver: nobody}\nreceivers: [{name: nobody}]\n";
    std::vector<std::string> arguments = {
        kAlertmanager,
        "--config.file=" + (_folder / "alertmanager.yml").string(),
        "--storage.path=" + (_folder / "data").string(),
        "--web.listen-address=" + _address,
        "--cluster.listen-address=",
        "--log.level=error",
    };
    _process.emplace([&] {
      execv(kAlertmanager, ZEB::argumentsOf(arguments).data());
      return 127;
    });
  }
  ~RealAlertmanager() { _process->kill(SIGTERM); }

  const std::string& address() const { return _address; }

  /// Alerts that are active; nothing while it does not answer.
  std::optional<nlohmann::json> active() const try {
    const std::string answer =
        ZebManager::exchange(_address, "GET /api/v2/alerts?active=true HTTP/1.0\r\nHost: localhost\r\n\r\n");
    return nlohmann::json::parse(answer.substr(answer.find("\r\n\r\n") + 4));
  } catch (const std::exception&) {
    return std::nullopt;
  }
  bool becomes(const std::vector<std::string>& names) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (namesOf(active()) != names) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return true;
  }
  /// As "?" while it does not answer.
  static std::vector<std::string> namesOf(const std::optional<nlohmann::json>& alerts) {
    if (!alerts) return {"?"};
    std::vector<std::string> names;
    for (const nlohmann::json& alert : *alerts) names.push_back(alert["labels"]["alertname"]);
    std::ranges::sort(names);
    return names;
  }

 private:
  const ZEB::TemporaryFolder _folder{"zebcim-alertmanager"};
  const std::string _address;
  std::optional<ZEB::ChildProcess> _process;
};

}  // namespace ZebManager
