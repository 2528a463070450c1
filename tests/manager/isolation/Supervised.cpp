#include "Supervised.h"

#include <algorithm>
#include <filesystem>
#include <thread>

#include "support/Content.h"

namespace ZebManager {

using ZEB::test::contentOf;

Supervised::Supervised() {
  options.process.program = ZEB_ISOLATED_PROVIDER;
  options.patience = 400ms;
  options.grace = 100ms;
  options.alertPatience = 1500ms;
  options.timeLimit = 3s * kPace;
  options.firstBackOff = 50ms;
  options.longestBackOff = 400ms;
  options.log = [this](const std::string& line) {
    const std::lock_guard lock(_mutex);
    _log.push_back(line);
  };
  setenv("ZEB_TEST_STARTS", file("starts").c_str(), 1);
  setenv("ZEB_TEST_TRACE", file("trace").c_str(), 1);
  setenv("ZEB_TEST_GATE", file("gate").c_str(), 1);
  setenv("ZEB_TEST_LOCKED", file("locked").c_str(), 1);
}

Supervised::~Supervised() {
  supervisor.reset();
}

void Supervised::start() {
  supervisor = std::make_unique<ProviderSupervisor>(
      options, [this](const std::vector<std::string>& names, const std::string& element) {
        std::string line;
        for (const std::string& name : names) line += name + " ";
        const std::lock_guard lock(_mutex);
        _indications.push_back(line + element);
      });
}

std::future<ProviderSupervisor::Answer> Supervised::begin(const std::string& message, bool repeatable) {
  return std::async(std::launch::async,
                    [this, message, repeatable] { return supervisor->perform(message, repeatable); });
}

pid_t Supervised::provider() {
  const Answer answer = read("pid");
  // Never a number that stands for a group of processes: tests send signals to it.
  if (answer.outcome != How::Done) throw std::runtime_error("no provider answers: " + answer.body);
  return std::stoi(answer.body);
}

std::vector<std::string> Supervised::indications() {
  const std::lock_guard lock(_mutex);
  return _indications;
}

bool Supervised::logged(const std::string& part) {
  const std::lock_guard lock(_mutex);
  return std::any_of(_log.begin(), _log.end(),
                     [&](const std::string& line) { return line.find(part) != std::string::npos; });
}

std::size_t linesOf(const std::string& file) {
  const std::string content = contentOf(file);
  return static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n'));
}

bool isGone(pid_t process) {
  return !std::filesystem::exists("/proc/" + std::to_string(process));
}

}  // namespace ZebManager
