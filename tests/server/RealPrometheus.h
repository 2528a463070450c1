// Debian's Prometheus with the rules that are installed, as a process of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Server.h"
#include "posix/Arguments.h"
#include "support/TestListener.h"

namespace ZebManager {

inline constexpr char kPrometheus[] = "/usr/bin/prometheus";

/// Scrapes a server every second, and tells an Alertmanager where there is one.
class RealPrometheus {
 public:
  explicit RealPrometheus(const std::string& server, const std::string& alertmanager = {})
      : _address("127.0.0.1:" + std::to_string(freePort())) {
    std::ofstream(_folder / "prometheus.yml")
        << "global: {scrape_interval: 1s, evaluation_interval: 1s}\nrule_files: [" ZEB_RULES "]\n"
        << "scrape_configs: [{job_name: zeb, static_configs: [{targets: ['" << server << "']}]}]\n"
        << (alertmanager.empty()
                ? ""
                : "alerting: {alertmanagers: [{static_configs: [{targets: ['" + alertmanager + "']}]}]}\n");
    std::vector<std::string> arguments = {kPrometheus,
                                          "--config.file=" + (_folder / "prometheus.yml").string(),
                                          "--storage.tsdb.path=" + (_folder / "data").string(),
                                          "--web.listen-address=" + _address, "--log.level=error"};
    _process.emplace([&] {
      execv(kPrometheus, ZEB::argumentsOf(arguments).data());
      return 127;
    });
  }
  ~RealPrometheus() { _process->kill(SIGTERM); }

  /// What a query gives as soon as it gives something.
  nlohmann::json resultOf(const std::string& query) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    nlohmann::json result = nlohmann::json::array();
    while (result.empty() && std::chrono::steady_clock::now() < end) {
      result = asked(query);
      if (result.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    return result;
  }

 private:
  nlohmann::json asked(const std::string& query) const try {
    std::string escaped;
    for (const char c : query) {
      constexpr char kDigits[] = "0123456789ABCDEF";
      const auto byte = static_cast<unsigned char>(c);
      escaped += std::string("%") + kDigits[byte >> 4] + kDigits[byte & 15];
    }
    const std::string answer = ZebManager::exchange(
        _address, "GET /api/v1/query?query=" + escaped + " HTTP/1.0\r\nHost: localhost\r\n\r\n");
    const nlohmann::json json = nlohmann::json::parse(answer.substr(answer.find("\r\n\r\n") + 4));
    if (json["status"] != "success") ADD_FAILURE() << query << ": " << json;
    return json["data"]["result"];
  } catch (const std::exception&) {
    return nlohmann::json::array();  // it does not listen yet
  }

  const ZEB::TemporaryFolder _folder{"zebcim-prometheus"};
  const std::string _address;
  std::optional<ZEB::ChildProcess> _process;
};

}  // namespace ZebManager
