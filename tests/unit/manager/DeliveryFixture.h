// Deliveries from a folder of its own, with short pauses.
#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "indications/Delivery.h"
#include "posix/TemporaryFolder.h"
#include "support/TestListener.h"

namespace ZebManager {

using namespace std::chrono_literals;

inline std::string alert(int number) {
  return "<INSTANCE CLASSNAME=\"A_Alert\"><PROPERTY NAME=\"Text\" TYPE=\"string\"><VALUE>alert " +
         std::to_string(number) + "</VALUE></PROPERTY></INSTANCE>";
}

inline std::string found(const std::string& text, const char* pattern) {
  std::smatch match;
  return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : "";
}

inline int alertIn(const TestListener::Request& request) {
  const std::string number = found(request.body, "<VALUE>alert ([0-9]+)</VALUE>");
  return number.empty() ? -1 : std::stoi(number);
}

inline std::string sequenceNumberIn(const TestListener::Request& request) {
  return found(request.body, "NAME=\"SequenceNumber\" TYPE=\"sint64\"><VALUE>([0-9]+)</VALUE>");
}

inline std::string contextIn(const TestListener::Request& request) {
  return found(request.body, "NAME=\"SequenceContext\" TYPE=\"string\"><VALUE>([^<]+)</VALUE>");
}

inline std::vector<int> alertsIn(const TestListener& listener) {
  std::vector<int> numbers;
  for (const auto& request : listener.requests()) numbers.push_back(alertIn(request));
  return numbers;
}

inline Subscription subscription(const std::string& filter, const std::string& handler,
                                 const std::string& url) {
  return {filter + "->" + handler, filter, handler, url};
}

class Deliveries : public testing::Test {
 protected:
  Deliveries() {
    settings.directory = directory.path();
    settings.firstPause = 20ms;
    settings.longestPause = 100ms;
    settings.answerTimeout = 2s;
  }
  ~Deliveries() override { delivery.reset(); }

  void start() {
    delivery = std::make_unique<Delivery>(settings, [this](const std::string& line) {
      const std::lock_guard lock(mutex);
      lines.push_back(line);
    });
  }
  void start(const std::string& url) {
    start();
    delivery->setSubscriptions({subscription("f", "h", url)});
  }
  void deliver(int from, int to) {
    for (int i = from; i <= to; ++i) delivery->deliver({"f"}, alert(i));
  }
  bool becomesEmpty() {
    for (int i = 0; i < 1000 && delivery->waiting() > 0; ++i) std::this_thread::sleep_for(10ms);
    return delivery->waiting() == 0;
  }
  std::vector<std::string> log() {
    const std::lock_guard lock(mutex);
    return lines;
  }
  bool logs(const std::string& text) {
    for (int i = 0; i < 1000; ++i) {
      for (const std::string& line : log()) {
        if (line.find(text) != std::string::npos) return true;
      }
      std::this_thread::sleep_for(10ms);
    }
    return false;
  }

  ZEB::TemporaryFolder directory;
  DeliverySettings settings;
  std::mutex mutex;
  std::vector<std::string> lines;
  std::unique_ptr<Delivery> delivery;
};

}  // namespace ZebManager
